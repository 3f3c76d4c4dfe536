#ifndef TARNLET_SYMBOLS_H
#define TARNLET_SYMBOLS_H

/**
 * @file
 * @brief Symbols: what each word of a text is, where it stands, and what it refers to.
 *
 * For editors and other hosts that show or change the text itself. The words are told apart by the
 * statement and the place in it where they stand, also inside the quoted tables, which are most of
 * a description. Any text has symbols: a description, a package or a PPC/PRG file, whole, half
 * written or broken. A mistake in one statement does not reach the next one.
 *
 * @code
 * BsdlSymbols *symbols = bsdlSymbolsOf(text, length);
 * for (uint32_t i = 0; i < bsdlSymbolCount(symbols); i++) {
 *     const BsdlSymbol *symbol = bsdlSymbolAt(symbols, i);
 *     if (symbol->kind == BSDL_SYMBOL_PORT)
 *         printf("%u: %.*s\n", symbol->begin, (int)(symbol->end - symbol->begin),
 *                text + symbol->begin);
 * }
 * bsdlSymbolsRelease(symbols);
 * @endcode
 *
 * The work is linear in the length of the text. Several threads may ask at once.
 */

#include <stddef.h>
#include <stdint.h>

#include "tarnlet/bsdl.h"

#ifdef __cplusplus
extern "C" {
#endif

/** What a word is. */
enum BsdlSymbolKind {
    BSDL_SYMBOL_NONE = 0,      /**< A word where none is expected. */
    BSDL_SYMBOL_KEYWORD = 1,   /**< A word of the language. */
    BSDL_SYMBOL_VALUE = 2,     /**< A value by name or letter: a safe value, a disable result. */
    BSDL_SYMBOL_NUMBER = 3,    /**< A length, a count, a time, a frequency. */
    BSDL_SYMBOL_PATTERN = 4,   /**< Bits or hexadecimal digits. */
    BSDL_SYMBOL_SUBSCRIPT = 5, /**< The index of a bit of a port, a bound of a vector. */
    BSDL_SYMBOL_COMMENT = 6,   /**< A comment, with its two dashes, without its line end. */
    BSDL_SYMBOL_TEXT = 7,      /**< The inside of a string that is no table. */
    BSDL_SYMBOL_FUNCTION = 8,  /**< The function of a cell. */
    BSDL_SYMBOL_COMPONENT = 9, /**< The name of the entity. */
    BSDL_SYMBOL_PORT = 10,
    BSDL_SYMBOL_PIN = 11,
    BSDL_SYMBOL_PIN_MAP = 12, /**< The name of a pin mapping. */
    BSDL_SYMBOL_CELL_NUMBER = 13,
    BSDL_SYMBOL_CELL_NAME = 14, /**< The name of a cell description. */
    BSDL_SYMBOL_INSTRUCTION = 15,
    BSDL_SYMBOL_REGISTER = 16,
    BSDL_SYMBOL_ATTRIBUTE = 17, /**< An attribute of a standard. */
    BSDL_SYMBOL_EXTENSION = 18, /**< Any other attribute. */
    BSDL_SYMBOL_PACKAGE = 19,   /**< The name of a package file, less its ".all". */
    BSDL_SYMBOL_FLOW = 20,
    BSDL_SYMBOL_PROCEDURE = 21,
    BSDL_SYMBOL_ACTION = 22,
    BSDL_SYMBOL_DATA_NAME = 23, /**< The data of a flow, procedure or action. */
    BSDL_SYMBOL_VARIABLE = 24,  /**< A variable of a flow, with its dollar sign. */
    BSDL_SYMBOL_PART = 25       /**< A part of a scan chain. */
};

/** Bits of BsdlSymbol.flags. */
enum BsdlSymbolFlag {
    BSDL_SYMBOL_IN_STRING = 0x1, /**< Inside a quoted string. */
    BSDL_SYMBOL_DEFINES = 0x2,   /**< Stands where the name is introduced. */
    BSDL_SYMBOL_SPLIT = 0x4      /**< Goes on in the next piece of its string: quotes and an '&' lie
                                      between. */
};

/** Value of BsdlSymbol.refers_to for a name that this text does not introduce. */
enum BsdlSymbolReference { BSDL_SYMBOL_ELSEWHERE = -1 };

/** One word. */
typedef struct BsdlSymbol {
    uint32_t begin;     /**< Offset of its first byte. */
    uint32_t end;       /**< Offset after its last byte. */
    uint32_t statement; /**< Index of its statement. */
    uint32_t row;       /**< Row of the table it stands in, counted from 0. */
    int16_t column;     /**< Its place between the commas of the innermost parenthesis. */
    uint8_t kind;       /**< See BsdlSymbolKind. */
    uint8_t flags;      /**< See BsdlSymbolFlag. */
    int32_t refers_to;  /**< Index of the symbol that introduces the name: its own for that symbol;
                             BSDL_SYMBOL_ELSEWHERE; the same for kinds that are no names. */
} BsdlSymbol;

/** What a statement is. */
enum BsdlStatementKind {
    BSDL_STATEMENT_OTHER = 0, /**< Comments between statements, and what begins with no keyword. */
    BSDL_STATEMENT_ENTITY = 1,
    BSDL_STATEMENT_GENERIC = 2,
    BSDL_STATEMENT_PORT = 3,
    BSDL_STATEMENT_USE = 4,
    BSDL_STATEMENT_ATTRIBUTE = 5,
    BSDL_STATEMENT_CONSTANT = 6,
    BSDL_STATEMENT_PACKAGE = 7,
    BSDL_STATEMENT_PACKAGE_BODY = 8,
    BSDL_STATEMENT_END = 9
};

/** One statement. */
typedef struct BsdlStatement {
    int32_t kind;          /**< See BsdlStatementKind. */
    uint32_t begin;        /**< Offset of its first word or comment. */
    uint32_t end;          /**< Offset after its ';' or, where that is missing, its last word or
                                sign. Comments behind that are its symbols but lie beyond. */
    uint32_t first_symbol; /**< Index of its first symbol. */
    uint32_t symbol_count;
    int32_t name;   /**< Index of the symbol that names it: the attribute, constant, component
                         or package; -1 without one. */
    uint32_t rows;  /**< Number of rows of its table. */
    int32_t closed; /**< 1: it ends as it has to. */
} BsdlStatement;

/** The symbols of one text. */
typedef struct BsdlSymbols BsdlSymbols;

/**
 * Finds the symbols of a text.
 *
 * @param text   May be NULL when length is 0. It is read during the call only.
 * @param length Number of bytes, less than 2^31.
 * @return The symbols, to be given back with bsdlSymbolsRelease(); NULL out of memory, for a NULL
 *         text that has a length, and for a text that is too long.
 */
TARNLET_API BsdlSymbols *bsdlSymbolsOf(const char *text, size_t length);

/** Gives the symbols back with all that they own. NULL is ignored. */
TARNLET_API void bsdlSymbolsRelease(BsdlSymbols *symbols);

/** Number of symbols; 0 for NULL. */
TARNLET_API uint32_t bsdlSymbolCount(const BsdlSymbols *symbols);

/** A symbol, in the order of the text; NULL beyond the last one. The others follow it in memory. */
TARNLET_API const BsdlSymbol *bsdlSymbolAt(const BsdlSymbols *symbols, uint32_t index);

/** Number of statements; 0 for NULL. */
TARNLET_API uint32_t bsdlStatementCount(const BsdlSymbols *symbols);

/** A statement, in the order of the text; NULL beyond the last one. The others follow it in
 * memory. */
TARNLET_API const BsdlStatement *bsdlStatementAt(const BsdlSymbols *symbols, uint32_t index);

#ifdef __cplusplus
}
#endif

#endif
