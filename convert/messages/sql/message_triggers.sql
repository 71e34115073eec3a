-- The triggers of a 4.x phone's message store: they keep the threads (and the maker's vrnm_threads), the queue of pending
-- messages and the search index in step with the messages. Each insert counts anew over the whole conversation.

CREATE TRIGGER sms_update_thread_on_insert AFTER INSERT ON sms
BEGIN
    UPDATE threads SET date = strftime('%s', 'now') * 1000, snippet = new.body, snippet_cs = 0
        WHERE threads._id = new.thread_id;
    UPDATE threads SET message_count =
            (SELECT COUNT(*) FROM sms WHERE sms.thread_id = threads._id AND sms.type != 3)
            + (SELECT COUNT(*) FROM pdu
               WHERE pdu.thread_id = threads._id AND pdu.m_type IN (128, 130, 132) AND pdu.msg_box != 3)
        WHERE threads._id = new.thread_id;
    UPDATE threads SET read = (SELECT COUNT(*) = 0 FROM sms WHERE sms.thread_id = threads._id AND sms.read = 0)
        WHERE threads._id = new.thread_id;
    UPDATE vrnm_threads SET date = strftime('%s', 'now') * 1000, snippet = new.body, snippet_cs = 0,
            snippet_type = CASE new.type WHEN 1 THEN 1 WHEN 3 THEN 3 ELSE 2 END
        WHERE vrnm_threads._id = new.thread_id;
END;

CREATE TRIGGER sms_update_thread_date_subject_on_update AFTER UPDATE OF date, body, type ON sms
BEGIN
    UPDATE threads SET date = strftime('%s', 'now') * 1000, snippet = new.body, snippet_cs = 0
        WHERE threads._id = new.thread_id;
    UPDATE threads SET message_count =
            (SELECT COUNT(*) FROM sms WHERE sms.thread_id = threads._id AND sms.type != 3)
            + (SELECT COUNT(*) FROM pdu
               WHERE pdu.thread_id = threads._id AND pdu.m_type IN (128, 130, 132) AND pdu.msg_box != 3)
        WHERE threads._id = new.thread_id;
    UPDATE threads SET read = (SELECT COUNT(*) = 0 FROM sms WHERE sms.thread_id = threads._id AND sms.read = 0)
        WHERE threads._id = new.thread_id;
    UPDATE vrnm_threads SET date = strftime('%s', 'now') * 1000, snippet = new.body, snippet_cs = 0,
            snippet_type = CASE new.type WHEN 1 THEN 1 WHEN 3 THEN 3 ELSE 2 END
        WHERE vrnm_threads._id = new.thread_id;
END;

CREATE TRIGGER sms_update_thread_read_on_update AFTER UPDATE OF read ON sms
BEGIN
    UPDATE threads SET read = (SELECT COUNT(*) = 0 FROM sms WHERE sms.thread_id = threads._id AND sms.read = 0)
        WHERE threads._id = new.thread_id;
END;

CREATE TRIGGER pdu_update_thread_on_insert AFTER INSERT ON pdu
WHEN new.m_type IN (128, 130, 132)
BEGIN
    UPDATE threads SET date = strftime('%s', 'now') * 1000, snippet = new.sub, snippet_cs = new.sub_cs
        WHERE threads._id = new.thread_id;
    UPDATE threads SET message_count =
            (SELECT COUNT(*) FROM sms WHERE sms.thread_id = threads._id AND sms.type != 3)
            + (SELECT COUNT(*) FROM pdu
               WHERE pdu.thread_id = threads._id AND pdu.m_type IN (128, 130, 132) AND pdu.msg_box != 3)
        WHERE threads._id = new.thread_id;
    UPDATE threads SET read = (SELECT COUNT(*) = 0 FROM pdu
                                 WHERE pdu.thread_id = threads._id AND pdu.read = 0
                                   AND pdu.m_type IN (128, 130, 132))
        WHERE threads._id = new.thread_id;
    UPDATE vrnm_threads SET date = strftime('%s', 'now') * 1000, snippet = new.sub, snippet_cs = new.sub_cs,
            snippet_type = CASE new.msg_box WHEN 1 THEN 1 WHEN 3 THEN 3 ELSE 2 END
        WHERE vrnm_threads._id = new.thread_id;
END;

CREATE TRIGGER pdu_update_thread_date_subject_on_update AFTER UPDATE OF date, sub, msg_box ON pdu
WHEN new.m_type IN (128, 130, 132)
BEGIN
    UPDATE threads SET date = strftime('%s', 'now') * 1000, snippet = new.sub, snippet_cs = new.sub_cs
        WHERE threads._id = new.thread_id;
    UPDATE threads SET message_count =
            (SELECT COUNT(*) FROM sms WHERE sms.thread_id = threads._id AND sms.type != 3)
            + (SELECT COUNT(*) FROM pdu
               WHERE pdu.thread_id = threads._id AND pdu.m_type IN (128, 130, 132) AND pdu.msg_box != 3)
        WHERE threads._id = new.thread_id;
    UPDATE threads SET read = (SELECT COUNT(*) = 0 FROM pdu
                                 WHERE pdu.thread_id = threads._id AND pdu.read = 0
                                   AND pdu.m_type IN (128, 130, 132))
        WHERE threads._id = new.thread_id;
    UPDATE vrnm_threads SET date = strftime('%s', 'now') * 1000, snippet = new.sub, snippet_cs = new.sub_cs,
            snippet_type = CASE new.msg_box WHEN 1 THEN 1 WHEN 3 THEN 3 ELSE 2 END
        WHERE vrnm_threads._id = new.thread_id;
END;

CREATE TRIGGER pdu_update_thread_read_on_update AFTER UPDATE OF read ON pdu
WHEN new.m_type IN (128, 130, 132)
BEGIN
    UPDATE threads SET read = (SELECT COUNT(*) = 0 FROM pdu
                                 WHERE pdu.thread_id = threads._id AND pdu.read = 0
                                   AND pdu.m_type IN (128, 130, 132))
        WHERE threads._id = new.thread_id;
END;

CREATE TRIGGER pdu_update_thread_on_delete AFTER DELETE ON pdu
BEGIN
    UPDATE threads SET date = strftime('%s', 'now') * 1000 WHERE threads._id = old.thread_id;
    UPDATE threads SET message_count =
            (SELECT COUNT(*) FROM sms WHERE sms.thread_id = threads._id AND sms.type != 3)
            + (SELECT COUNT(*) FROM pdu
               WHERE pdu.thread_id = threads._id AND pdu.m_type IN (128, 130, 132) AND pdu.msg_box != 3)
        WHERE threads._id = old.thread_id;
    UPDATE threads SET (snippet, snippet_cs) =
            (SELECT text, charset FROM
                (SELECT date * 1000 AS moment, sub AS text, sub_cs AS charset FROM pdu WHERE thread_id = old.thread_id
                 UNION ALL
                 SELECT date, body, 0 FROM sms WHERE thread_id = old.thread_id)
             ORDER BY moment DESC LIMIT 1)
        WHERE threads._id = old.thread_id;
END;

-- A thread keeps has_attachment once it is set, until a part or message goes.
CREATE TRIGGER update_threads_on_insert_part AFTER INSERT ON part
WHEN new.ct NOT IN ('text/plain', 'application/smil')
BEGIN
    UPDATE threads SET has_attachment = 1
        WHERE threads._id IN (SELECT thread_id FROM pdu WHERE pdu._id = new.mid);
END;

CREATE TRIGGER update_threads_on_update_part AFTER UPDATE OF mid ON part
WHEN new.ct NOT IN ('text/plain', 'application/smil')
BEGIN
    UPDATE threads SET has_attachment = 1
        WHERE threads._id IN (SELECT thread_id FROM pdu WHERE pdu._id = new.mid);
END;

CREATE TRIGGER update_threads_on_delete_part AFTER DELETE ON part
WHEN old.ct NOT IN ('text/plain', 'application/smil')
BEGIN
    UPDATE threads SET has_attachment =
            (SELECT COUNT(*) > 0 FROM part JOIN pdu ON pdu._id = part.mid
             WHERE pdu.thread_id = threads._id AND part.ct NOT IN ('text/plain', 'application/smil'))
        WHERE threads._id IN (SELECT thread_id FROM pdu WHERE pdu._id = old.mid);
END;

CREATE TRIGGER update_threads_on_update_pdu AFTER UPDATE OF thread_id ON pdu
BEGIN
    UPDATE threads SET has_attachment = 1
        WHERE threads._id = new.thread_id
          AND EXISTS (SELECT 1 FROM part WHERE part.mid = new._id AND part.ct NOT IN ('text/plain', 'application/smil'));
END;

-- Messages that could not be sent (type 5, or a pending one with an error of 10 and above) are counted in threads.error.
CREATE TRIGGER update_threads_error_on_update_sms AFTER UPDATE OF type ON sms
WHEN (old.type = 5) != (new.type = 5)
BEGIN
    UPDATE threads SET error = error + CASE WHEN new.type = 5 THEN 1 ELSE -1 END
        WHERE threads._id = new.thread_id;
END;

CREATE TRIGGER update_threads_error_on_update_mms AFTER UPDATE OF err_type ON pending_msgs
WHEN (old.err_type >= 10) != (new.err_type >= 10)
BEGIN
    UPDATE threads SET error = error + CASE WHEN new.err_type >= 10 THEN 1 ELSE -1 END
        WHERE threads._id IN (SELECT thread_id FROM pdu WHERE pdu._id = new.msg_id);
END;

CREATE TRIGGER update_threads_error_on_delete_mms BEFORE DELETE ON pdu
WHEN EXISTS (SELECT 1 FROM pending_msgs WHERE msg_id = old._id AND err_type >= 10)
BEGIN
    UPDATE threads SET error = error - 1 WHERE threads._id = old.thread_id;
END;

CREATE TRIGGER update_threads_error_on_move_mms AFTER UPDATE OF msg_box ON pdu
WHEN old.msg_box = 4 AND new.msg_box != 4
     AND EXISTS (SELECT 1 FROM pending_msgs WHERE msg_id = new._id AND err_type >= 10)
BEGIN
    UPDATE threads SET error = error - 1 WHERE threads._id = old.thread_id;
END;

-- What is to be fetched (130), acknowledged (135) or sent (out-box, 4) waits in pending_msgs.
CREATE TRIGGER insert_mms_pending_on_insert AFTER INSERT ON pdu
WHEN new.m_type IN (130, 135)
BEGIN
    INSERT INTO pending_msgs (proto_type, msg_id, msg_type, err_type, err_code, retry_index, due_time)
        VALUES (1, new._id, new.m_type, 0, 0, 0, 0);
END;

CREATE TRIGGER insert_mms_pending_on_update AFTER UPDATE ON pdu
WHEN new.m_type = 128 AND new.msg_box = 4 AND old.msg_box != 4
BEGIN
    INSERT INTO pending_msgs (proto_type, msg_id, msg_type, err_type, err_code, retry_index, due_time)
        VALUES (1, new._id, new.m_type, 0, 0, 0, 0);
END;

CREATE TRIGGER delete_mms_pending_on_update AFTER UPDATE ON pdu
WHEN old.msg_box = 4 AND new.msg_box != 4
BEGIN
    DELETE FROM pending_msgs WHERE msg_id = old._id;
END;

CREATE TRIGGER delete_mms_pending_on_delete AFTER DELETE ON pdu
BEGIN
    DELETE FROM pending_msgs WHERE msg_id = old._id;
END;

-- What belongs to a message goes with it.
CREATE TRIGGER part_cleanup AFTER DELETE ON pdu
BEGIN
    DELETE FROM part WHERE mid = old._id;
END;

CREATE TRIGGER addr_cleanup AFTER DELETE ON pdu
BEGIN
    DELETE FROM addr WHERE msg_id = old._id;
END;

CREATE TRIGGER cleanup_delivery_and_read_report AFTER DELETE ON pdu
WHEN old.m_type = 128
BEGIN
    DELETE FROM pdu WHERE m_type IN (134, 136) AND m_id = old.m_id;
END;

-- The search index: table 1 is sms, table 2 is part. Its rows are inserted by the app, not by triggers.
CREATE TRIGGER sms_words_update AFTER UPDATE ON sms
BEGIN
    UPDATE words SET index_text = new.body WHERE source_id = new._id AND table_to_use = 1;
END;

CREATE TRIGGER sms_words_delete AFTER DELETE ON sms
BEGIN
    DELETE FROM words WHERE source_id = old._id AND table_to_use = 1;
END;

CREATE TRIGGER mms_words_update AFTER UPDATE ON part
BEGIN
    UPDATE words SET index_text = new.text WHERE source_id = new._id AND table_to_use = 2;
END;

CREATE TRIGGER mms_words_delete AFTER DELETE ON part
BEGIN
    DELETE FROM words WHERE source_id = old._id AND table_to_use = 2;
END;
