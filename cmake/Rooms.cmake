# A room is one folder and one library target. Its headers are reached as "<folder>/x.h" through an
# include tree of its own, which only the targets that link the room can see: an include of a room
# that is not linked does not compile.

set(VELMORA_INCLUDE_TREES ${CMAKE_BINARY_DIR}/include-trees)

if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # Misfires in g++ 12 on every "text" + std::string (its bug 105651).
  set(VELMORA_MISFIRING -Wno-restrict)
endif()
set(VELMORA_WARNINGS -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual ${VELMORA_MISFIRING})
if(VELMORA_WERROR)
  list(APPEND VELMORA_WARNINGS -Werror)
endif()
# Exactness arguments rest on the operations as written: no contraction, no value-changing rewrites.
set(VELMORA_CODEGEN -ffp-contract=off -fno-math-errno)

function(velmora_compile_settings target)
  target_compile_options(${target} PRIVATE ${VELMORA_WARNINGS} ${VELMORA_CODEGEN})
  if(VELMORA_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${VELMORA_SANITIZE} -fno-omit-frame-pointer
                                             -fno-sanitize-recover=all)
    target_link_options(${target} PUBLIC -fsanitize=${VELMORA_SANITIZE})
  endif()
  if(VELMORA_FUZZ)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# velmora_room(<name> [SUBFOLDERS <folder>...] [DEPENDS <room>...])
# Sources are all *.cpp of the current folder and of the named sub-folders.
function(velmora_room name)
  cmake_parse_arguments(ROOM "" "" "SUBFOLDERS;DEPENDS" ${ARGN})
  file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  set(patterns *.cpp)
  set(header_patterns *.h)
  foreach(sub ${ROOM_SUBFOLDERS})
    list(APPEND patterns ${sub}/*.cpp)
    list(APPEND header_patterns ${sub}/*.h)
  endforeach()
  file(GLOB sources CONFIGURE_DEPENDS ${patterns})
  file(GLOB headers CONFIGURE_DEPENDS ${header_patterns})

  set(tree ${VELMORA_INCLUDE_TREES}/${name})
  get_filename_component(parent ${tree}/${folder} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${tree}/${folder} SYMBOLIC)

  if(sources)
    add_library(${name} STATIC ${sources} ${headers})
    target_include_directories(${name} PUBLIC ${tree})
    target_link_libraries(${name} PUBLIC ${ROOM_DEPENDS} Threads::Threads)
    velmora_compile_settings(${name})
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${tree})
    target_link_libraries(${name} INTERFACE ${ROOM_DEPENDS} Threads::Threads)
  endif()
endfunction()

# velmora_tests(<name> [DEPENDS <room>...] [LIBRARIES <lib>...]): one test binary a folder, all *_test.cpp.
function(velmora_tests name)
  cmake_parse_arguments(T "" "" "DEPENDS;LIBRARIES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE ${T_DEPENDS} test_support GTest::gtest_main GTest::gmock
                                        ${T_LIBRARIES} gmpxx gmp mpfr)
  velmora_compile_settings(${name})
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 900)
endfunction()
