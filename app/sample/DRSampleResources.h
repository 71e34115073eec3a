#pragma once

#include <QByteArray>
#include <QString>

/// The bytes of a text that is built into the program beside this code, such as "sql/phone_notes.sql". The name must be
/// one of those listed in app/CMakeLists.txt.
[[nodiscard]] QByteArray sampleResource(const QString& name);
