# The Debian packages that CPack makes: one of each component.
set(version "${PROJECT_VERSION}")
file(STRINGS "${CMAKE_CURRENT_LIST_DIR}/changelog" newest LIMIT_COUNT 1)
string(FIND "${newest}" "phone-migrate (${version}) " position)
if(NOT position EQUAL 0)
    message(FATAL_ERROR "packaging/changelog does not begin with version ${version}: ${newest}")
endif()
file(STRINGS "${CMAKE_CURRENT_LIST_DIR}/example.vornmobile.phone_migrate_wizard.metainfo.xml" releases REGEX "<release ")
list(GET releases 0 newest)
if(NOT newest MATCHES "version=\"${version}\"")
    message(FATAL_ERROR "the metadata in packaging does not begin with version ${version}: ${newest}")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME phone-migrate)
set(CPACK_PACKAGE_VERSION "${version}")
set(CPACK_PACKAGE_CONTACT "Migrate developers <migrate@migrate.invalid>")
# Each package's description brings its own first line.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# Not CPACK_STRIP_FILES: that leaves more in the programs than Debian wants.
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/StripPrograms.cmake")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL cli)
if(MIGRATE_GUI)
    list(APPEND CPACK_COMPONENTS_ALL wizard)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

# Without the list of the world's clock changes, recurring events would follow the clock of Greenwich.
set(CPACK_DEBIAN_PACKAGE_DEPENDS tzdata)

set(CPACK_DEBIAN_CLI_PACKAGE_NAME phone-migrate)
set(CPACK_DEBIAN_CLI_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_CLI_PACKAGE_SUGGESTS phone-migrate-wizard)
set(CPACK_DEBIAN_CLI_DESCRIPTION
"move the content of an iPhone backup onto an Android phone
Reads an unencrypted iTunes backup of an iPhone that lies on this computer,
and writes contacts, call history, messages with attachments, notes,
calendars, bookmarks, photos, videos, music and voice memos into the apps of
an Android phone.

The backup is never changed. The phone's apps are backed up before anything
is written, and can be put back. What could not be moved is counted and
named.

This package contains the command line, which needs no display.")

set(CPACK_DEBIAN_WIZARD_PACKAGE_NAME phone-migrate-wizard)
set(CPACK_DEBIAN_WIZARD_PACKAGE_SOURCE phone-migrate)
set(CPACK_DEBIAN_WIZARD_PACKAGE_SECTION x11)
# The window does without the command line, which is what undoes a transfer; the translations are those of Qt's own dialogs.
set(CPACK_DEBIAN_WIZARD_PACKAGE_RECOMMENDS "phone-migrate (= ${version}), qt6-translations-l10n")
set(CPACK_DEBIAN_WIZARD_PACKAGE_SUGGESTS qt6-wayland)
set(CPACK_DEBIAN_WIZARD_DESCRIPTION
"move an iPhone's content onto an Android phone, step by step
Guides through the move of an iPhone's content onto an Android phone: finds
the iTunes backups on this computer, shows what they hold, lets choose, and
writes contacts, call history, messages with attachments, notes, calendars,
bookmarks, photos, videos, music and voice memos into the phone's apps.

The backup is never changed. The phone's apps are backed up before anything
is written. What could not be moved is counted and named.

This package contains the window, in English and German.")

include(CPack)
