# One place for how everything here is compiled: every library, program and test links migrate_common.
add_library(migrate_common INTERFACE)
target_include_directories(migrate_common INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_features(migrate_common INTERFACE cxx_std_20)
target_compile_options(migrate_common INTERFACE
    -fno-exceptions
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wcast-qual
    -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference
    # Records are built with designated initialisers; what is left out has its default.
    -Wno-missing-field-initializers
    $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wduplicated-branches -Wlogical-op -Wuseless-cast>
    $<$<BOOL:${MIGRATE_WERROR}>:-Werror>)
target_compile_definitions(migrate_common INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS
    QT_STRICT_ITERATORS QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400
    MIGRATE_VERSION="${PROJECT_VERSION}")
target_link_libraries(migrate_common INTERFACE Qt6::Core)

if(MIGRATE_SANITIZE)
    target_compile_options(migrate_common INTERFACE -fsanitize=${MIGRATE_SANITIZE} -fno-omit-frame-pointer
                                                    -fno-sanitize-recover=all)
    target_link_options(migrate_common INTERFACE -fsanitize=${MIGRATE_SANITIZE})
endif()
if(MIGRATE_SANITIZE STREQUAL "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 takes the values of optionals for uninitialised when it instruments them.
    target_compile_options(migrate_common INTERFACE -Wno-maybe-uninitialized)
endif()

if(MIGRATE_HARDENING)
    # What Debian builds its packages with. Fortified functions need optimisation, which Release has. Built into the programs
    # are no paths of the computer that built them.
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES CXX)
    set(CMAKE_POSITION_INDEPENDENT_CODE ON)
    target_compile_options(migrate_common INTERFACE
        -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -Wformat -Werror=format-security
        "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.")
    target_link_options(migrate_common INTERFACE LINKER:-z,relro LINKER:-z,now)
endif()

if(MIGRATE_FUZZERS)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "MIGRATE_FUZZERS needs Clang, which brings libFuzzer")
    endif()
    # Lets libFuzzer see which code an input reaches.
    target_compile_options(migrate_common INTERFACE -fsanitize=fuzzer-no-link)
endif()

set(migrate_test_options -O0) # what is tested is optimised; tests themselves should rather compile fast
include(cmake/PrecompiledHeaders.cmake)

# migrate_add_library(name SOURCES ... LINKS ... [WIDGETS]): one static library of a layer or of a part of it; with WIDGETS its sources
# may use Qt's widgets.
function(migrate_add_library name)
    cmake_parse_arguments(ARG "WIDGETS" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC migrate_common ${ARG_LINKS})
    if(ARG_WIDGETS)
        migrate_use_precompiled(${name} migrate_widget_headers)
    else()
        migrate_use_precompiled(${name} migrate_headers)
    endif()
endfunction()

# migrate_add_test(name SOURCES ... LINKS ... [TIMEOUT seconds] [WIDGETS]): one Qt Test program, run in an odd time zone, without a
# display and without the system's D-Bus, its user folders in the build tree.
function(migrate_add_test name)
    cmake_parse_arguments(ARG "WIDGETS" "TIMEOUT" "SOURCES;LINKS" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_compile_options(${name} PRIVATE ${migrate_test_options})
    target_link_libraries(${name} PRIVATE migrate_test_support ${ARG_LINKS} Qt6::Test)
    if(ARG_WIDGETS)
        migrate_use_precompiled(${name} migrate_widget_test_headers)
    else()
        migrate_use_precompiled(${name} migrate_test_headers)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${ARG_TIMEOUT}
        ENVIRONMENT "TZ=Asia/Kathmandu;QT_QPA_PLATFORM=offscreen;XDG_DATA_HOME=${CMAKE_BINARY_DIR}/home/${name}/data;XDG_CACHE_HOME=${CMAKE_BINARY_DIR}/home/${name}/cache;XDG_STATE_HOME=${CMAKE_BINARY_DIR}/home/${name}/state;DBUS_SYSTEM_BUS_ADDRESS=unix:path=/nowhere;TSAN_OPTIONS=ignore_noninstrumented_modules=1")
endfunction()
