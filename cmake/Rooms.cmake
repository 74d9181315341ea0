# A room is a folder under src/ and one static library. src/rooms.txt says which rooms it may include; it links those,
# and its one root of includes is a folder in the build tree with links to them and to what they may include in turn.

set(list_of_rooms ${CMAKE_SOURCE_DIR}/src/rooms.txt)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list_of_rooms})
file(STRINGS ${list_of_rooms} lines REGEX "^[^#]")
file(REMOVE_RECURSE ${CMAKE_BINARY_DIR}/rooms)
foreach(line IN LISTS lines)
  if(NOT line MATCHES "^([a-z0-9_/]+):([a-z0-9_/ ]*)$")
    message(FATAL_ERROR "${list_of_rooms}: '${line}' is not 'room: room room'")
  endif()
  set(room ${CMAKE_MATCH_1})
  separate_arguments(QNDR_ARROWS_${room} UNIX_COMMAND "${CMAKE_MATCH_2}")
  set(QNDR_REACH_${room} ${room})
  foreach(other IN LISTS QNDR_ARROWS_${room})
    if(NOT DEFINED QNDR_REACH_${other})
      message(FATAL_ERROR "${list_of_rooms}: ${other} does not stand above ${room}")
    endif()
    list(APPEND QNDR_REACH_${room} ${QNDR_REACH_${other}})
  endforeach()
  list(REMOVE_DUPLICATES QNDR_REACH_${room})
  foreach(seen IN LISTS QNDR_REACH_${room})
    set(entries ${seen})
    if(lines MATCHES "(^|;)${seen}/") # what is a room of its own in it is not seen with it
      file(GLOB entries RELATIVE ${CMAKE_SOURCE_DIR}/src CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${seen}/*.h)
    endif()
    foreach(entry IN LISTS entries)
      set(link ${CMAKE_BINARY_DIR}/rooms/${room}/${entry})
      cmake_path(GET link PARENT_PATH folder)
      file(MAKE_DIRECTORY ${folder})
      file(CREATE_LINK ${CMAKE_SOURCE_DIR}/src/${entry} ${link} SYMBOLIC)
    endforeach()
  endforeach()
endforeach()

add_library(qndr_flags INTERFACE)
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

# Tests, benchmarks and fuzzers see every room.
add_library(qndr_all_rooms INTERFACE)
target_include_directories(qndr_all_rooms INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_link_libraries(qndr_all_rooms INTERFACE qndr_flags)

# qndr_libraries_of(result room...): the names of the rooms' libraries
function(qndr_libraries_of result)
  list(TRANSFORM ARGN PREPEND qndr_)
  list(TRANSFORM ARGN REPLACE "/" "_")
  set(${result} ${ARGN} PARENT_SCOPE)
endfunction()

# qndr_put_into_room(target room): has the target compiled and linked with what the room may include
function(qndr_put_into_room target room)
  if(NOT DEFINED QNDR_ARROWS_${room})
    message(FATAL_ERROR "${list_of_rooms} has no room ${room}")
  endif()
  qndr_libraries_of(arrows ${QNDR_ARROWS_${room}})
  target_include_directories(${target} PRIVATE ${CMAKE_BINARY_DIR}/rooms/${room})
  target_link_libraries(${target} PUBLIC qndr_flags ${arrows})
endfunction()

# qndr_room(name SOURCES file... [LIBRARIES target...]); the library of suite/sql is qndr_suite_sql
function(qndr_room room)
  cmake_parse_arguments(ROOM "" "" "SOURCES;LIBRARIES" ${ARGN})
  qndr_libraries_of(target ${room})
  if(NOT ROOM_SOURCES) # headers alone
    qndr_libraries_of(arrows ${QNDR_ARROWS_${room}})
    add_library(${target} INTERFACE)
    target_link_libraries(${target} INTERFACE qndr_flags ${arrows} ${ROOM_LIBRARIES})
    return()
  endif()
  add_library(${target} STATIC ${ROOM_SOURCES})
  qndr_put_into_room(${target} ${room})
  target_link_libraries(${target} PUBLIC ${ROOM_LIBRARIES})
endfunction()

# qndr_program(name SOURCES file... [LIBRARIES target...]): the program of the room programs/<name>, with the library of
# that room where it has one
function(qndr_program name)
  cmake_parse_arguments(PROGRAM "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${PROGRAM_SOURCES})
  if(TARGET qndr_programs_${name})
    target_link_libraries(${name} PUBLIC qndr_programs_${name})
  endif()
  qndr_put_into_room(${name} programs/${name})
  target_link_libraries(${name} PRIVATE ${PROGRAM_LIBRARIES})
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
  qndr_libraries_of(used ${TEST_USES})
  target_link_libraries(test_${name} PRIVATE qndr_all_rooms ${used} ${TEST_LIBRARIES} GTest::gtest GTest::gtest_main)
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
