/// Storage of the records of one dispatch.
#pragma once

#include <memory>
#include <new>
#include <utility>

#include "lumo/foundation/types/types.h"

namespace lumo {

/// Up to `capacity` records, constructed one by one and destroyed in reverse. 15 records stand in the object
/// itself, so that a dispatch of up to 16 indices touches no heap.
template <typename Record>
class RecordArray {
 public:
    static constexpr upL_t LOCAL_RECORDS = 15;

    explicit RecordArray(upL_t capacity) {
        if (capacity > LOCAL_RECORDS) {
            heap.reset(static_cast<Record*>(
                ::operator new(capacity * sizeof(Record), std::align_val_t(alignof(Record)))));
            records = heap.get();
        } else {
            records = reinterpret_cast<Record*>(local);
        }
    }
    RecordArray(const RecordArray&) = delete;
    RecordArray& operator=(const RecordArray&) = delete;
    ~RecordArray() {
        while (count > 0) std::destroy_at(records + --count);
    }

    template <typename... Args>
    Record& emplace_back(Args&&... args) {
        Record* record = std::construct_at(records + count, std::forward<Args>(args)...);
        count++;
        return *record;
    }
    Record* begin() { return records; }
    Record* end() { return records + count; }

 private:
    struct Release {
        void operator()(Record* pointer) const {
            ::operator delete(pointer, std::align_val_t(alignof(Record)));
        }
    };

    alignas(Record) std::byte local[LOCAL_RECORDS * sizeof(Record)];
    std::unique_ptr<Record, Release> heap;
    Record* records;
    upL_t count = 0;
};

}  // namespace lumo
