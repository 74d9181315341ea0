# One folder under src/ is one room and one static library. A room links only the rooms that it may include;
# scripts/tidy holds the includes against the same list.

include(GoogleTest)

add_library(qndr_flags INTERFACE)
target_include_directories(qndr_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
if(MSVC)
  target_compile_options(qndr_flags INTERFACE /W4 /utf-8)
else()
  target_compile_options(qndr_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                                              -Wnon-virtual-dtor -Woverloaded-virtual)
endif()
if(QNDR_WARNINGS_AS_ERRORS)
  target_compile_options(qndr_flags INTERFACE $<IF:$<CXX_COMPILER_ID:MSVC>,/WX,-Werror>)
endif()
if(QNDR_SANITIZE)
  target_compile_options(qndr_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                              -fno-omit-frame-pointer)
  target_link_options(qndr_flags INTERFACE -fsanitize=address,undefined)
endif()
if(QNDR_FUZZ)
  target_compile_options(qndr_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# qndr_room(name SOURCES file... [USES room...] [LIBRARIES target...])
function(qndr_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;USES;LIBRARIES" ${ARGN})
  list(TRANSFORM ROOM_USES PREPEND qndr_)
  if(NOT ROOM_SOURCES) # a room that holds only headers, or nothing yet
    add_library(qndr_${name} INTERFACE)
    target_link_libraries(qndr_${name} INTERFACE qndr_flags ${ROOM_USES} ${ROOM_LIBRARIES})
    return()
  endif()
  add_library(qndr_${name} STATIC ${ROOM_SOURCES})
  target_link_libraries(qndr_${name} PUBLIC qndr_flags ${ROOM_USES} ${ROOM_LIBRARIES})
endfunction()

# qndr_test(name SOURCES file... USES room...): one test program for the tests of one room
function(qndr_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;USES;LIBRARIES" ${ARGN})
  add_executable(test_${name} ${TEST_SOURCES})
  list(TRANSFORM TEST_USES PREPEND qndr_)
  target_link_libraries(test_${name} PRIVATE qndr_flags ${TEST_USES} ${TEST_LIBRARIES} GTest::gtest GTest::gtest_main)
  target_include_directories(test_${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  gtest_discover_tests(test_${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()
