#include "platform/media/DRMP4Path.h"

#include <QStringList>

std::optional<DRMP4Path> mp4PathOf(const QString& path)
{
    DRMP4Path types;
    const QStringList names = path.split(QChar(u'/'));
    for (const QString& name : names) {
        if (name.size() != 4) {
            return std::nullopt;
        }
        quint32 type = 0;
        for (const QChar character : name) {
            if (character.unicode() > 0xFF) {
                return std::nullopt;
            }
            type = (type << 8U) | character.unicode();
        }
        types.push_back(type);
    }
    return types;
}
