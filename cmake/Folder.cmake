# One target per source folder. A folder sees its own headers and those of the folders it links, as
# "folder/header.h", and no others: a wrong include does not compile.

add_library(tv_flags INTERFACE)
target_compile_options(tv_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Werror)
if(TARVOLIN_SANITIZE)
    target_compile_options(tv_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                              -fno-omit-frame-pointer)
    target_link_options(tv_flags INTERFACE -fsanitize=address,undefined)
endif()
if(TARVOLIN_COVERAGE)
    target_compile_options(tv_flags INTERFACE --coverage)
    target_link_options(tv_flags INTERFACE --coverage)
endif()
if(TARVOLIN_FUZZ)
    target_compile_options(tv_flags INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined)
    target_link_options(tv_flags INTERFACE -fsanitize=address,undefined)
endif()

# tv_folder(platform SOURCES a.cpp b.cpp USES tv_model ...): the static library tv_<folder>.
function(tv_folder folder)
    cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
    string(REPLACE "/" "_" target "tv_${folder}")
    set(view "${CMAKE_BINARY_DIR}/include/${target}")
    get_filename_component(parent "${view}/${folder}" DIRECTORY)
    file(MAKE_DIRECTORY "${parent}")
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${view}/${folder}" SYMBOLIC)
    add_library(${target} STATIC ${ARG_SOURCES})
    target_include_directories(${target} PUBLIC "${view}")
    target_link_libraries(${target} PUBLIC tv_flags ${ARG_USES})
endfunction()

# tv_program(name SOURCES ... USES ...): an executable, with the sanitizers' options where they are on.
function(tv_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    if(TARVOLIN_SANITIZE)
        target_sources(${name} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/sanitizers.cpp)
    endif()
    target_link_libraries(${name} PRIVATE ${ARG_USES})
endfunction()
