// SPDX-License-Identifier: MIT
/* Services of the controller's runtime, exported with C++ names: tick clock, directories, INI files. */
#ifndef KALORFIX_RUNTIME_H
#define KALORFIX_RUNTIME_H

#include <stdio.h>
#include <sys/time.h>
#include <time.h>

#include "kalorfix.h"

/* ---- Clock -------------------------------------------------------------------------------------------------- */

/// Prepares the tick clock; nothing needs preparing. Returns 0.
KALORFIX_API int OpenAbsClock();

/// The tick counter of the process-times clock: 32 bits, wraps; sysconf(_SC_CLK_TCK) ticks a second, not moved by
/// setting the wall clock. A failing times() gives the negated errno.
KALORFIX_API int abs_clock();

/// Converts seconds and microseconds to seconds and nanoseconds. Both pointers must be valid.
KALORFIX_API void timecon(timeval* from, timespec* to);

/* ---- Directories ---------------------------------------------------------------------------------------- */

/// The directories of the runtime. Each member points into the environment (the variable of its name) or at its
/// default; nothing is copied or owned. No trailing "/".
class KALORFIX_API CSRV_PATH {
public:
    /// Reads the environment: a variable that is set, even to nothing, is taken as it is.
    void InitPathes();

    /// Writes the directories to standard output, a line each.
    void Print();

    const char* TORNPATH;      ///< root of the runtime, /ubm
    const char* PATHDB;        ///< data, /ubm/sram; the downtime stamp is in its dat subdirectory
    const char* PRG;           ///< programs, /ubm/prg
    const char* SYSTEM;        ///< system files, /ubm/system; gas.dat is here
    const char* LIB;           ///< libraries, /ubm/lib
    const char* DIC;           ///< dictionaries, /ubm/dic
    const char* SETTINGS;      ///< settings, /ubm/settings; tornkntr.ini is here
    const char* PRG_DEBUG;     ///< programs under test, /ubm/prg/debug
    const char* XML_SETTINGS;  ///< XML settings, /ubm/torndb
};

/// The directories in force: filled when the library is loaded, never changed afterwards.
KALORFIX_API extern CSRV_PATH SRV_Path;

/* ---- INI files ------------------------------------------------------------------------------------------ */

struct IniSection;

/// Reader of INI files.
///
/// A section header is [WORD WORD WORD]: the section and up to two qualifiers; it may go on over several lines. A key
/// line is key = value; ":" begins a comment that runs to the end of the line. Names are compared exactly, white space
/// is not part of a key. In string values "&" joins lines: it is dropped with the blanks before it and all blanks and
/// line ends after it. Only regular files are opened. A null word in a search matches any word.
///
/// The getters return 0 found, 1 section not found, 2 key not found, and write the result only when it is found.
/// The destructor frees the name only: call Close to release the file and the index.
class KALORFIX_API IniFile {
public:
    IniFile();
    explicit IniFile(char const* file_name);
    IniFile(char const* file_name, int mode_bits);
    ~IniFile();
    IniFile(const IniFile&) = delete;
    IniFile& operator=(const IniFile&) = delete;

    /// Takes a copy of a name that is not empty.
    void SetName(char const* file_name);

    /// Mode bits: 1 "r", 2 "w", 4 "a", then 8 "b" or else "t", then 16 "+".
    void SetMode(int mode_bits);

    /// A mode string of 1 to 5 characters as it is; anything else empties it. The mode bits become 0. Returns the
    /// length of the string given.
    int SetSMode(char const* mode_string);

    /// Opens the file and builds the index: 0 done, 1 not opened, 2 done, but a file was open before (it is not closed), 3
    /// opened, but a header is malformed: the sections before it can be used.
    unsigned char Open();

    /// Frees the index and closes the file: 0 done, 255 fclose failed, 254 no file was open.
    unsigned char Close();

    /// Builds the index: 0 done, 1 no open file, 2 malformed header or no memory: the sections before it can be used.
    int CreatTableSection();

    /// Frees the index, leaves the file open. Returns 0.
    int DeleteTableSection();

    /// Seeks behind the header of a section: 0 found, 1 malformed header (more than three words) on the way, 2 not found.
    int SectionSearch(char const* section, char const* sub1, char const* sub2, int* line);

    /// Reads on to a key of the section at hand and behind its "=": 0 found, 1 not found.
    int KeySearch(char const* key);

    /// Decimal numbers. Spaces are dropped, the first other character ends the number; text that is no number gives 0.
    /// Integers saturate at 32 bits and are then narrowed.
    int CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, int& result);
    int CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, long& result);
    int CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, short& result);
    int CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, float& result);

    /// A string of up to 999 characters, without blanks at its ends; `result` holds 1000 bytes.
    int CfgGet(char const* section, char const* sub1, char const* sub2, char const* key, char* result);

    /// A string of up to 1999 characters in which ":" is kept; `result` holds 2000 bytes.
    int CfgGetMax(char const* section, char const* sub1, char const* sub2, char const* key, char* result);

    /// Walks the lines of a section, one a call: 0 a line was returned, 1 the section is finished or was not found. A line
    /// without "=" gives an empty key and value. `key` and `value` hold 1000 bytes each.
    int GetNextKey(char const* section, char const* sub1, char const* sub2, char* key, char* value, int* line);

    /// A list of channel numbers, "1,3-5" or "all", each within 1..max, into `out`; returns their count. `out` must
    /// hold what the text asks for.
    int ConvertStrToListVar(char const* text, short max, short* out);
    int ConvertStrToListVar(char const* text, int max, int* out);

private:
    FILE* file_ = nullptr;
    int mode_ = 0;
    char mode_string_[8]{};
    int section_count_ = 0;
    char* name_ = nullptr;
    unsigned char status_ = 0;
    IniSection* first_ = nullptr;
    IniSection* current_ = nullptr;
    IniSection* previous_ = nullptr;
    unsigned char iterating_ = 0;
};

#endif /* KALORFIX_RUNTIME_H */
