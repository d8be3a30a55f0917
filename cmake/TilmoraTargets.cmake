# Shared compile settings for every Tilmora target.

set(TILMORA_WARNINGS -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast
                     -Woverloaded-virtual -Wimplicit-fallthrough)

if(TILMORA_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

if(TILMORA_FUZZ)
    # Coverage for libFuzzer in every library, the sanitizers catch what a crash would not.
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

# tilmora_library(<name> SOURCES ... LINKS ...): one static library per layer.
function(tilmora_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_compile_options(${name} PRIVATE ${TILMORA_WARNINGS})
    target_compile_definitions(${name} PUBLIC QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS)
    target_link_libraries(${name} PUBLIC ${ARG_LINKS})
endfunction()

# tilmora_test(<name> [SERIAL] LABEL <label> SOURCES ... LINKS ... [ENVIRONMENT VAR=value ...]):
# one GoogleTest executable whose cases ctest lists one by one, each run with the environment
# given; SERIAL ones run while no other test does.
function(tilmora_test name)
    cmake_parse_arguments(ARG "SERIAL" "LABEL" "SOURCES;LINKS;ENVIRONMENT" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    # Every test prints QStrings as text in its failure messages.
    target_compile_options(${name} PRIVATE ${TILMORA_WARNINGS} -include
                                           ${PROJECT_SOURCE_DIR}/tests/support/QStringPrinting.h)
    target_link_libraries(${name} PRIVATE ${ARG_LINKS} GTest::gmock GTest::gtest_main)
    set(properties LABELS ${ARG_LABEL})
    if(ARG_SERIAL)
        list(APPEND properties RUN_SERIAL TRUE)
    endif()
    if(ARG_ENVIRONMENT)
        list(APPEND properties ENVIRONMENT "${ARG_ENVIRONMENT}")
    endif()
    gtest_discover_tests(${name} NO_PRETTY_VALUES PROPERTIES ${properties} DISCOVERY_TIMEOUT 60)
endfunction()
