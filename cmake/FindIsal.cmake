# ISA-L deflates and inflates several times faster than zlib on x86-64 and 64-bit Arm. Elsewhere it may be missing: then zlib works.
find_path(ISAL_INCLUDE_DIR isa-l/igzip_lib.h)
find_library(ISAL_LIBRARY isal)
if(ISAL_INCLUDE_DIR AND ISAL_LIBRARY)
    add_library(Isal::isal UNKNOWN IMPORTED)
    set_target_properties(Isal::isal PROPERTIES IMPORTED_LOCATION "${ISAL_LIBRARY}"
                                                INTERFACE_INCLUDE_DIRECTORIES "${ISAL_INCLUDE_DIR}"
                                                INTERFACE_COMPILE_DEFINITIONS MIGRATE_HAS_ISAL)
else()
    message(STATUS "ISA-L not found: packets are packed with zlib")
    add_library(Isal::isal INTERFACE IMPORTED)
endif()
mark_as_advanced(ISAL_INCLUDE_DIR ISAL_LIBRARY)
