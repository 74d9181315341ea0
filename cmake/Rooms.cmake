# One folder under src/ is one room and one static library. A room links only the rooms that it may include;
# scripts/tidy holds the includes against the same list.

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

# qndr_unoptimized(target): for what takes no time when it runs. Optimized and sanitized, it takes twice as long to
# compile as that is worth.
function(qndr_unoptimized target)
  target_compile_options(${target} PRIVATE $<$<AND:$<CONFIG:Debug>,$<NOT:$<CXX_COMPILER_ID:MSVC>>>:-O0>)
endfunction()

# qndr_test(name SOURCES file... USES room... [LIBRARIES target...] [SHARDS n]): one test program for the tests of one
# room. They run in one process, or shared out among n: started for each test, the sanitizers took most of the time.
function(qndr_test name)
  cmake_parse_arguments(TEST "" "SHARDS" "SOURCES;USES;LIBRARIES" ${ARGN})
  add_executable(test_${name} ${TEST_SOURCES})
  list(TRANSFORM TEST_USES PREPEND qndr_)
  target_link_libraries(test_${name} PRIVATE qndr_flags ${TEST_USES} ${TEST_LIBRARIES} GTest::gtest GTest::gtest_main)
  target_include_directories(test_${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  qndr_unoptimized(test_${name})
  if(NOT "Qt6::Test" IN_LIST TEST_LIBRARIES) # which has everything compiled position independent
    target_precompile_headers(test_${name} REUSE_FROM qndr_test_header)
  endif()
  if(NOT TEST_SHARDS)
    add_test(NAME ${name} COMMAND test_${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES TIMEOUT 300)
    return()
  endif()
  foreach(shard RANGE 1 ${TEST_SHARDS})
    math(EXPR index "${shard} - 1")
    add_test(NAME ${name}.${shard} COMMAND test_${name} --gtest_brief=1)
    # The long ones first, so that no core waits for the last of them.
    set_tests_properties(${name}.${shard} PROPERTIES TIMEOUT 300 COST 10
                         ENVIRONMENT "GTEST_TOTAL_SHARDS=${TEST_SHARDS};GTEST_SHARD_INDEX=${index}")
  endforeach()
endfunction()
