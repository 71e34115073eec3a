#pragma once

class DRDatabase;

/// What a phone's message database does by itself when messages are inserted. Its triggers count a whole conversation
/// anew at each row, so that a long conversation takes the square of its length, unless they may be left out.
namespace DRMessageTriggers {

/// Whether a run of inserts leaves the same tables when its triggers fire for these rows only:
/// - the last row of `sms` and the last row of `pdu` of each thread_id, both, in the order of their insertion;
/// - the first row of `part` of each pair of a thread (that of the message `mid`) and a `ct`, compared byte by byte.
/// For more rows they may fire. A time that the triggers took from the clock is that of the last row either way.
///
/// A run is any number of inserts into `sms`, `pdu` and `part` with no other statement between them, in any order and into
/// any number of threads, whose rows of `threads` and `vrnm_threads` stand already. The rows are those of our writer: new
/// ones without a given `_id`, never REPLACE or IGNORE; `sms` with `read` 1 and `type` 0 or 1; `pdu` with `m_type` 128 and
/// `msg_box` 2, or with 132 and 1; a `part` after its `pdu`. When the insert of a row that has to fire fails, the run must
/// be undone and done again with triggers on. Everything outside a run is done with triggers on. The next run starts
/// anew, with first rows of `part` of its own.
///
/// True only when it can be proved from the texts of the triggers; false also for what is not understood: a trigger that
/// adds to what is there, logs, fills a search index, refuses rows, depends on the text of a message or updates other
/// rows; triggers that fire on those updates; tables that could refuse an update; statements that fail. Switches the
/// connection's triggers on.
[[nodiscard]] bool onlyRecompute(DRDatabase& database);

} // namespace DRMessageTriggers
