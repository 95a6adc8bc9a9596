-- SPDX-FileCopyrightText: 2026 The tarvik authors
-- SPDX-License-Identifier: GPL-3.0-or-later

-- Template of the message database. tarvik-dbgen turns this file into
-- tarvikdb.sqlite (UTF-16le, page size 1024), which is compiled into the client
-- as ":/res_storage/tarvikdb.sqlite" and copied to the data directory on first start.

CREATE TABLE inbox (tid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, tguid TEXT, tfrom TEXT, tto TEXT, tutcdatetime INTEGER DEFAULT 0, ttz INTEGER DEFAULT 0, ttitle TEXT, tnote TEXT, tlatitude REAL DEFAULT 0, tlongitude REAL DEFAULT 0, tscreenname TEXT, taddress TEXT, ttype TEXT, ttypedesc TEXT, timage TEXT, tpriority INTEGER DEFAULT 0, tcolor TEXT, treg TEXT, tcountry INTEGER DEFAULT 0, tcarrier TEXT, tversion TEXT, tflag INTEGER DEFAULT 0);
CREATE TABLE outbox (tid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, tguid TEXT, tfrom TEXT, tto TEXT, tutcdatetime INTEGER DEFAULT 0, ttz INTEGER DEFAULT 0, ttitle TEXT, tnote TEXT, tlatitude REAL DEFAULT 0, tlongitude REAL DEFAULT 0, tscreenname TEXT, taddress TEXT, ttype TEXT, ttypedesc TEXT, timage TEXT, tpriority INTEGER DEFAULT 0, tcolor TEXT, treg TEXT, tcountry INTEGER DEFAULT 0, tcarrier TEXT, tversion TEXT, tflag INTEGER DEFAULT 0);
CREATE TABLE sent (tid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, tguid TEXT, tfrom TEXT, tto TEXT, tutcdatetime INTEGER DEFAULT 0, ttz INTEGER DEFAULT 0, ttitle TEXT, tnote TEXT, tlatitude REAL DEFAULT 0, tlongitude REAL DEFAULT 0, tscreenname TEXT, taddress TEXT, ttype TEXT, ttypedesc TEXT, timage TEXT, tpriority INTEGER DEFAULT 0, tcolor TEXT, treg TEXT, tcountry INTEGER DEFAULT 0, tcarrier TEXT, tversion TEXT, tflag INTEGER DEFAULT 0);
CREATE TABLE draft (tid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, tguid TEXT, tfrom TEXT, tto TEXT, tutcdatetime INTEGER DEFAULT 0, ttz INTEGER DEFAULT 0, ttitle TEXT, tnote TEXT, tlatitude REAL DEFAULT 0, tlongitude REAL DEFAULT 0, tscreenname TEXT, taddress TEXT, ttype TEXT, ttypedesc TEXT, timage TEXT, tpriority INTEGER DEFAULT 0, tcolor TEXT, treg TEXT, tcountry INTEGER DEFAULT 0, tcarrier TEXT, tversion TEXT, tflag INTEGER DEFAULT 0);

CREATE INDEX idx_inbox_tutcdatetime ON inbox (tutcdatetime DESC);
CREATE INDEX idx_outbox_tutcdatetime ON outbox (tutcdatetime DESC);
CREATE INDEX idx_sent_tutcdatetime ON sent (tutcdatetime DESC);
CREATE INDEX idx_draft_tutcdatetime ON draft (tutcdatetime DESC);

CREATE TABLE settings (name TEXT, value TEXT);
INSERT INTO settings (name, value) VALUES ('imei', NULL);
INSERT INTO settings (name, value) VALUES ('screenname', NULL);
INSERT INTO settings (name, value) VALUES ('mynumber', NULL);
INSERT INTO settings (name, value) VALUES ('version', NULL);
INSERT INTO settings (name, value) VALUES ('imsi', NULL);
INSERT INTO settings (name, value) VALUES ('regflag', '0');
INSERT INTO settings (name, value) VALUES ('providelocation', '0');
INSERT INTO settings (name, value) VALUES ('providelocationperiod', '0');
INSERT INTO settings (name, value) VALUES ('pollinginterval', '0');

CREATE TABLE locationupdateschedule (day INTEGER, timeon TEXT, timeoff TEXT);
CREATE INDEX idx_locationupdateschedule ON locationupdateschedule (day ASC, timeon ASC);

-- The key counters start at 0 for the three folders the daemon fills; draft has none
-- until its first row.
INSERT INTO sqlite_sequence (name, seq) VALUES ('inbox', 0);
INSERT INTO sqlite_sequence (name, seq) VALUES ('outbox', 0);
INSERT INTO sqlite_sequence (name, seq) VALUES ('sent', 0);
