#include "scan_alone.h"

#include "frame/model.h"
#include "frame/reader_state.h"
#include "grammar.h"
#include "scan/scan_state.h"
#include "scan/scanner.h"

uint64_t scan_alone(const char *path)
{
    Bsdl bsdl = {};
    ScanState reading = {};
    uint64_t count = 0;
    bsdl.file_name = path;
    bsdl.standards = BSDL_STANDARD_BIT_2001;
    // The numbers of pin maps and cell tables are most of the text, so they are read as such.
    bsdl.scan_mode = SCAN_MODE_INTEGER;
    reader_state.context = nullptr;
    // As a reading does it, with a name table that fits the file.
    if (arena_start(&bsdl.arena) && reading_start(&bsdl, &reading) &&
        names_start(&bsdl.names, &bsdl.arena,
                    static_cast<size_t>(reading.files[0].end - reading.files[0].text) / 32)) {
        bsdl.reading = &reading;
        BSDL_YYSTYPE value;
        Place place = {};
        bool strings = false;
        for (int token; (token = scan_token(&value, &place, &bsdl)) != BSDL_YYEOF; count++) {
            if (token == QUOTED_STRING) {
                if (!strings)
                    release_strings(&bsdl);
                store_string(&bsdl, value.quoted);
                strings = true;
            } else if (token == ';' && strings) {
                // What the parser does for the attributes that have a grammar of their own.
                rescan_strings(&bsdl);
                strings = false;
            }
        }
    }
    reading_end(&reading);
    names_release(&bsdl.names);
    arena_release(&bsdl.arena);
    return count;
}
