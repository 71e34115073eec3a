# Reading the headers of Qt takes two thirds of the time that most files here take to compile; read once, they are cheap. Only the
# builds for developers do so: the build for users proves that every file includes what it needs.

# migrate_add_precompiled(name LINKS ... HEADERS ... OPTIONS ...): headers for targets that have the same options and that link the same
# modules of Qt. A compiler takes them for no others.
function(migrate_add_precompiled name)
    if(NOT MIGRATE_PRECOMPILED_HEADERS)
        return()
    endif()
    cmake_parse_arguments(ARG "" "" "LINKS;HEADERS;OPTIONS" ${ARGN})
    file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp" CONTENT "// The headers stand in the build script.\n")
    add_library(${name} OBJECT "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
    set_target_properties(${name} PROPERTIES AUTOMOC OFF)
    target_link_libraries(${name} PRIVATE migrate_common ${ARG_LINKS})
    target_compile_options(${name} PRIVATE ${ARG_OPTIONS})
    target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

# migrate_use_precompiled(target name): lets the target's sources begin with these headers.
function(migrate_use_precompiled target name)
    if(MIGRATE_PRECOMPILED_HEADERS)
        target_precompile_headers(${target} REUSE_FROM ${name})
    endif()
endfunction()

set(migrate_core_header_list
    <algorithm> <array> <cerrno> <cstddef> <functional> <limits> <map> <memory> <optional> <span> <utility> <vector>
    <QByteArray> <QDateTime> <QDir> <QFile> <QFileInfo> <QHash> <QJsonArray> <QJsonDocument> <QJsonObject> <QSet> <QString> <QStringList>
    <QtEndian>)
set(migrate_widget_header_list
    <QAccessible> <QApplication> <QHBoxLayout> <QKeyEvent> <QLabel> <QMessageBox> <QPainter> <QPushButton> <QScrollBar> <QStyle>
    <QVBoxLayout> <QWidget>)

migrate_add_precompiled(migrate_headers HEADERS ${migrate_core_header_list})
if(MIGRATE_GUI)
    migrate_add_precompiled(migrate_widget_headers LINKS Qt6::Widgets HEADERS ${migrate_core_header_list} ${migrate_widget_header_list})
endif()
