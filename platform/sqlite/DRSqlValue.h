#pragma once

#include <variant>
#include <vector>

#include <QByteArray>
#include <QString>

/// A value to bind to a statement's parameter: NULL, integer, real, text or bytes. A null QString or QByteArray binds
/// as NULL.
using DRSqlValue = std::variant<std::monostate, qint64, double, QString, QByteArray>;
using DRSqlValues = std::vector<DRSqlValue>;
