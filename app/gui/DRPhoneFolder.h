#pragma once

#include <functional>

#include <QString>

class DRMigrateStartup;
class QWidget;
struct DRMGContext;

/// What the program's windows have in common when a person chooses a folder.
namespace DRPhoneFolder {

/// Asks for a folder; `use` gets the one that is chosen. Does not wait; the window owns the dialog.
void choose(QWidget& window,
            const QString& title,
            const QString& start,
            const std::function<void(const QString&)>& use);

/// Puts the phone in this folder in use. When there is none, says so over the window and answers false, with the one
/// before still in use.
bool use(QWidget& window, const DRMGContext& context, DRMigrateStartup& startup, const QString& folder);

/// Says over the window that this folder is no phone.
void tellNoPhone(QWidget& window, const DRMGContext& context, const QString& folder);

} // namespace DRPhoneFolder
