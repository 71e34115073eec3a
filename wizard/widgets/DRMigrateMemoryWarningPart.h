#pragma once

#include <QColor>
#include <QRectF>
#include <QString>
#include <QStringList>

/// The keys of the phone's storage figures, in bytes.
namespace DRMigrateMemoryWarningKeys {

inline const QString kMusic = QStringLiteral("kDRMigrateMemoryWarningMusic");
inline const QString kImage = QStringLiteral("kDRMigrateMemoryWarningImage");
inline const QString kVideo = QStringLiteral("kDRMigrateMemoryWarningVideo");
inline const QString kOther = QStringLiteral("kDRMigrateMemoryWarningOther");
inline const QString kFree = QStringLiteral("kDRMigrateMemoryWarningFree");
inline const QString kTotal = QStringLiteral("kDRMigrateMemoryWarningTotal");

} // namespace DRMigrateMemoryWarningKeys

/// A body colour with the darker one below it and the lighter one above it.
struct DRMigrateMemoryWarningColors {
    QColor color;
    QColor shadow;
    QColor hilite;

    bool operator==(const DRMigrateMemoryWarningColors&) const = default;
};

/// One segment of the storage bar.
struct DRMigrateMemoryWarningPart {
    QString key;
    quint64 value = 0; ///< bytes
    QColor color;
    QColor shadow;
    QColor hilite;
    QRectF rect; ///< where it was last drawn, in the bar's points; may reach beyond the bar
    QString tooltip;

    /// A part of this key, with nothing else set.
    [[nodiscard]] static DRMigrateMemoryWarningPart partWithKey(const QString& key) { return {.key = key}; }

    /// The part as the bar shows it: with the colours of its key and the identifier of its tooltip's text in `tooltip`.
    /// Without either for a key that the bar does not draw.
    [[nodiscard]] static DRMigrateMemoryWarningPart styledPartWithKey(const QString& key);

    /// The keys that the bar draws, from its start.
    [[nodiscard]] static QStringList drawOrder();

    /// Derives shadow and hilite from the colour: the same hue and saturation at a quarter and at twice the brightness
    /// (at most 1), opaque.
    void makeShadowAndHiliteColor();

    bool operator==(const DRMigrateMemoryWarningPart&) const = default;
};
