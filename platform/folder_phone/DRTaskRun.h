#pragma once

#include "platform/folder_phone/DRFileContent.h"
#include "platform/folder_phone/DRStepOutcome.h"

#include <functional>
#include <vector>

#include <QVariantMap>

/// What one task does: a list of items, worked on one after the other. Made and destroyed on the main thread; the
/// operations are called one at a time, in the order in which they stand here.
class DRTaskRun {
public:
    /// Posts an event of the task.
    using Post = std::function<void(const QString& name, const QVariantMap& userInfo)>;

    DRTaskRun() = default;
    virtual ~DRTaskRun() = default;
    DRTaskRun(const DRTaskRun&) = delete;
    DRTaskRun& operator=(const DRTaskRun&) = delete;

    /// Main thread.
    virtual void willBegin() {}

    /// Gets ready and answers the bytes of each item, as far as they are known. Background.
    [[nodiscard]] virtual std::vector<quint64> prepare() = 0;

    /// For each item: its begin on the main thread, its work in the background, its end on the main thread.
    virtual void itemWillBegin(std::size_t /*index*/) {}
    [[nodiscard]] virtual DRStepOutcome work(std::size_t index, const DRByteProgress& progress) = 0;
    virtual void itemDidEnd(std::size_t index, const DRStepOutcome& outcome) = 0;

    /// Posts the last event and calls the handler. Main thread.
    virtual void didEnd() = 0;
};
