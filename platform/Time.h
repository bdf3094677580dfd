// File times and DOS times. DOS times are local time, as zip archives store
// them; the local zone is the process's (TZ).
#pragma once

#include "platform/WinTypes.h"

void GetSystemTimeAsFileTime(FILETIME* ft);
BOOL FileTimeToLocalFileTime(const FILETIME* utc, FILETIME* local);
BOOL LocalFileTimeToFileTime(const FILETIME* local, FILETIME* utc);
BOOL DosDateTimeToFileTime(WORD fatDate, WORD fatTime, FILETIME* ft);
BOOL FileTimeToDosDateTime(const FILETIME* ft, WORD* fatDate, WORD* fatTime);
BOOL FileTimeToSystemTime(const FILETIME* ft, SYSTEMTIME* st);
BOOL SystemTimeToFileTime(const SYSTEMTIME* st, FILETIME* ft);
// Seconds since 1970 (time_t) and file times.
FILETIME UnixTimeToFileTime(int64_t seconds, uint32_t nanoseconds = 0);
