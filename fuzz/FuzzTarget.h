#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// What every fuzz target defines, and nothing else: reads one input as the program would read it and ends the process when the
/// program does not keep one of its promises. Called any number of times; each call stands for itself.
void fuzzOne(QByteArrayView bytes);

/// Ends the process, naming the promise, unless it holds.
void require(bool holds, const char* promise);

/// A short input repeated to a megabyte, so that work that grows with the square of a text's length does not come to its end in
/// time. Empty for a longer input, so that most inputs cost little.
[[nodiscard]] QByteArray stretchedIfShort(QByteArrayView bytes);

/// Drops the program's log, which would tell of every damaged input. Call once, at start.
void silenceLog();
