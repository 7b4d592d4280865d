// Tests ask for more memory than any machine has; a sanitizer's allocator must answer as the real one does.

extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() {
    return "allocator_may_return_null=1";
}
