#pragma once

#include <QString>

/// The plain text of a note's HTML, as the phone's notes app shows it: `<br>` becomes a line feed, `<div>` one unless a
/// line has just ended or nothing stands before it, every other tag goes; an unclosed "<" ends the text; `&nbsp;`
/// becomes a blank, the standard XML entities and character references their characters. Never null. See
/// docs/formats/notes.md.
[[nodiscard]] QString convertNoteHTMLToText(const QString& html);
