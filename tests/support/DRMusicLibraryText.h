#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>

/// Writes the XML of music libraries for tests. Values are put in as they are, so that a test can be as hostile as it
/// likes.
namespace DRMusicLibraryText {

using Values = QList<QPair<QByteArray, QByteArray>>; ///< key and value element, such as {"Name", "<string>A</string>"}

inline QByteArray dictionary(const Values& values)
{
    QByteArray text = "<dict>";
    for (const auto& [key, value] : values) {
        text += "<key>" + key + "</key>" + value + '\n';
    }
    return text + "</dict>";
}

inline QByteArray string(const QByteArray& text)
{
    return "<string>" + text + "</string>";
}

inline QByteArray integer(qint64 number)
{
    return "<integer>" + QByteArray::number(number) + "</integer>";
}

/// The entry of the dictionary of tracks; `location` may be empty: none then.
inline QByteArray
track(qint64 id, const QByteArray& name, const QByteArray& location, Values values = {{"Total Time", integer(61500)}})
{
    values += {{"Track ID", integer(id)}, {"Name", string(name)}};
    if (!location.isEmpty()) {
        values += {"Location", string(location)};
    }
    return "<key>" + QByteArray::number(id) + "</key>" + dictionary(values) + '\n';
}

inline QByteArray
playlist(const QByteArray& name, const QByteArray& persistentID, const QList<qint64>& trackIDs, Values values = {})
{
    QByteArray items;
    for (const qint64 id : trackIDs) {
        items += dictionary({{"Track ID", integer(id)}});
    }
    values += {{"Name", string(name)},
               {"Playlist Persistent ID", string(persistentID)},
               {"Playlist Items", "<array>" + items + "</array>"}};
    return dictionary(values) + '\n';
}

inline const QByteArray kHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                "<!DOCTYPE plist PUBLIC \"-//Example//DTD PLIST 1.0//EN\" "
                                "\"http://example.com/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n";

inline QByteArray library(const QByteArray& tracks, const QByteArray& playlists)
{
    return kHead +
           dictionary({{"Major Version", integer(1)},
                       {"Tracks", "<dict>" + tracks + "</dict>"},
                       {"Playlists", "<array>" + playlists + "</array>"}}) +
           "\n</plist>\n";
}

} // namespace DRMusicLibraryText
