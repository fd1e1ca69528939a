# Flags that every target here is built with, and the function that turns a folder into an object library.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)  # or what is built would depend on the length of the folder's name
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

# Sums have a promised order and no fused steps, whatever the machine: contraction stays off everywhere.
set(ZP_COMPILE_OPTIONS -Wall -Wextra -Wconversion -Wshadow -Wnon-virtual-dtor -ffp-contract=off
  -fno-semantic-interposition)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  list(APPEND ZP_COMPILE_OPTIONS -Wno-restrict)  # g++ 12 sees overlaps in plain string concatenation at -O2 that aren't there
  list(APPEND ZP_COMPILE_OPTIONS --param=ggc-min-heapsize=524288)  # KiB; cleaning up earlier costs it a tenth of its time
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  list(APPEND ZP_COMPILE_OPTIONS -Wno-sign-conversion -Wno-self-assign-overloaded -Wno-unused-lambda-capture)  # as g++ sees them
endif()
if(CMAKE_UNITY_BUILD)
  set(CMAKE_UNITY_BUILD_BATCH_SIZE 16)
  # Sources of a bundle see each other's names, and g++ takes them for a header's.
  list(APPEND ZP_COMPILE_OPTIONS -Wno-shadow $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endif()
if(ZP_WARNINGS_AS_ERRORS)
  list(APPEND ZP_COMPILE_OPTIONS -Werror)
endif()
# The library calls its own functions without the detour that would let a program replace them.
set(ZP_LINK_OPTIONS -Wl,-Bsymbolic-functions)
if(ZP_SANITIZE)
  list(APPEND ZP_COMPILE_OPTIONS -fsanitize=${ZP_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    list(APPEND ZP_COMPILE_OPTIONS -Wno-maybe-uninitialized)  # g++ takes the sanitizers' own code for uses of unset values
  endif()
  list(APPEND ZP_LINK_OPTIONS -fsanitize=${ZP_SANITIZE})
endif()
if(ZP_BUILD_FUZZ AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  list(APPEND ZP_COMPILE_OPTIONS -fsanitize=fuzzer-no-link)  # the library counts its branches too, or the fuzzer is blind in it
endif()

# zp_add_folder(<folder>): every .cpp of the folder becomes part of the library. Symbols are hidden unless ZP_API shows them.
function(zp_add_folder folder)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_library(zp_${folder} OBJECT ${sources})
  set_target_properties(zp_${folder} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_compile_features(zp_${folder} PUBLIC cxx_std_20)
  target_compile_options(zp_${folder} PRIVATE ${ZP_COMPILE_OPTIONS})
  target_include_directories(zp_${folder} PRIVATE ${PROJECT_BINARY_DIR}/include ${PROJECT_SOURCE_DIR})
  target_sources(zpbase PRIVATE $<TARGET_OBJECTS:zp_${folder}>)
endfunction()

# zp_compile_strings(<input> <table> <output>): a file of texts by number as C++.
function(zp_compile_strings input table output)
  set(script ${PROJECT_SOURCE_DIR}/cmake/CompileStrings.cmake)
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DINPUT=${input} -DTABLE=${table} -DOUTPUT=${output} -P ${script}
    DEPENDS ${input} ${script} ${PROJECT_SOURCE_DIR}/cmake/ResourceLines.cmake VERBATIM)
endfunction()

# zp_add_resources(): the library's texts, and those, the dialog templates and the accelerators of our stand-in for the application's
# module.
function(zp_add_resources)
  set(folder ${PROJECT_BINARY_DIR}/resources)
  set(sources ${folder}/strings.cpp ${folder}/library_strings.cpp ${folder}/templates.cpp ${folder}/accelerators.cpp)
  zp_compile_strings(${PROJECT_SOURCE_DIR}/resources/strings.txt applicationTexts ${folder}/strings.cpp)
  zp_compile_strings(${PROJECT_SOURCE_DIR}/resources/library_strings.txt libraryTexts ${folder}/library_strings.cpp)
  foreach(kind IN ITEMS Templates Accelerators)
    string(TOLOWER ${kind} name)
    set(input ${PROJECT_SOURCE_DIR}/resources/${name}.txt)
    set(script ${PROJECT_SOURCE_DIR}/cmake/Compile${kind}.cmake)
    add_custom_command(OUTPUT ${folder}/${name}.cpp
      COMMAND ${CMAKE_COMMAND} -DINPUT=${input} -DOUTPUT=${folder}/${name}.cpp -P ${script}
      DEPENDS ${input} ${script} ${PROJECT_SOURCE_DIR}/cmake/ResourceLines.cmake VERBATIM)
  endforeach()
  add_library(zp_resources OBJECT ${sources})
  set_target_properties(zp_resources PROPERTIES CXX_VISIBILITY_PRESET hidden)
  target_compile_features(zp_resources PUBLIC cxx_std_20)
  target_compile_options(zp_resources PRIVATE ${ZP_COMPILE_OPTIONS})
  target_include_directories(zp_resources PRIVATE ${PROJECT_BINARY_DIR}/include ${PROJECT_SOURCE_DIR})
  target_sources(zpbase PRIVATE $<TARGET_OBJECTS:zp_resources>)
endfunction()

# zp_add_program(<name> <sources...>): an executable on the public headers alone, with the house's flags.
function(zp_add_program name)
  add_executable(${name} ${ARGN})
  target_compile_options(${name} PRIVATE ${ZP_COMPILE_OPTIONS})
  target_link_options(${name} PRIVATE ${ZP_LINK_OPTIONS})
  target_link_libraries(${name} PRIVATE zpbase::zpbase)
endfunction()
