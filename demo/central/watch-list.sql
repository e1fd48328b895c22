-- The watch list of the demo's central database. Every person on it is made up.
--
-- Each *.sql of this folder is run, in the order of their names, when the demo makes its central database: a further
-- file needs no other mention. The tables are those of schema/central.sql, and a statement ends with a semicolon.

INSERT INTO AMLAMast (RefNo,Name,NRIC,PassportNo,OtherInformation) VALUES
-- Comes to the counter of Cahaya Dana on the demo's business day.
('DEMO-2019-004',N'RASHID BIN MAULANA','690909-02-5511','',
 N'Made up for practice. Wanted for forged pledges of land in three states.'),
-- Customers of companies that do not screen at the counter, so that nobody has noticed.
('DEMO-2021-011',N'KOH JIA WEI','950108-14-5537','',
 N'Made up for practice. Straw borrower of a ring of car thieves.'),
('DEMO-2022-017',N'HAMZAH BIN TAHIR','970212-08-5509','',
 N'Made up for practice. Collects for an unlawful investment scheme.'),
-- Names that are only like those of customers; the numbers are other persons'.
('DEMO-2020-007',N'YUSOF KHAIRUL ANUAR','650303-11-5019','',
 N'Made up for practice. Order of the names as in his passport.'),
('DEMO-2020-008',N'MARÍA DE LA CRUZ','','XDC902144',
 N'Made up for practice. Travels on several passports.'),
('DEMO-2023-021',N'GANESAN MUNIANDY','880712-05-6033','',
 N'Made up for practice.'),
-- Nobody that the demo knows.
('DEMO-2018-001',N'TAN KOK BENG 陈国明','580214-07-5113','A18804417',
 N'Made up for practice. Also known as "Ah Beng Besar".'),
('DEMO-2018-002',N'O''REILLY, PATRICK SEAN','','PX0091175',
 N'Made up for practice. Ship''s agent.'),
('DEMO-2024-030',N'AL-MASRI TRADING & CO','','',
 N'Made up for practice. A company; no number is known.');
