#pragma once

#include "convert/messages/DRConversationReader.h"

/// The conversations of the older layout with the tables `msg_group`, `group_member`, `msg_pieces` and
/// `madrid_attachment`, in the order of the groups' rows; those without members or without messages are left out. None when
/// the database has no such tables. Messages that the layout's rules leave out are among the losses.
[[nodiscard]] DRChatReading
readGroups(DRDatabase& database, const DRMessageRows& rows, const DRAttachmentFinder& finder);
