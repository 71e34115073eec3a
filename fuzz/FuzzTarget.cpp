#include "fuzz/FuzzTarget.h"

#include <QtGlobal>

#include <cstdio>
#include <cstdlib>

void require(bool holds, const char* promise)
{
    if (!holds) {
        static_cast<void>(std::fprintf(stderr, "broken promise: %s\n", promise));
        std::abort();
    }
}

QByteArray stretchedIfShort(QByteArrayView bytes)
{
    constexpr qsizetype kShort = 6;
    constexpr qsizetype kStretched = qsizetype{1} << 20;
    const bool isShort = !bytes.isEmpty() && bytes.size() <= kShort;
    return isShort ? bytes.toByteArray().repeated(kStretched / bytes.size()) : QByteArray();
}

void silenceLog()
{
    qInstallMessageHandler(
        [](QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& /*message*/) {});
}
