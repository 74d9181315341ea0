SELECT 'it''s DATEADD(day,1)', "DATEADD(day,", [Name], `ID` FROM T -- DATEADD(day,
/* DATEADD(day, */