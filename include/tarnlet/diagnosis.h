#ifndef TARNLET_DIAGNOSIS_H
#define TARNLET_DIAGNOSIS_H

/**
 * @file
 * @brief Findings: what is wrong in a text, where, and what fixes it.
 *
 * readBsdl() and the checks tell a host all that the standard has to say about a file, rule by
 * rule. A diagnosis tells a person what to do: each mistake once, at its place, with the edit that
 * fixes it. It reads a text, fixes mistakes of syntax by trial and reads on. So mistakes after the
 * first are found too, and the rules are checked on the text as its author meant it.
 *
 * @code
 * BsdlDiagnosisOptions options = {.size = sizeof options};
 * BsdlDiagnosis *diagnosis = bsdlDiagnose(text, length, "device.bsd", &options);
 * for (uint32_t i = 0; i < bsdlFindingCount(diagnosis); i++) {
 *     const BsdlFinding *finding = bsdlFindingAt(diagnosis, i);
 *     printf("%s:%d:%d: %s\n", finding->place.file, finding->place.line, finding->place.column,
 *            finding->text);
 * }
 * bsdlDiagnosisRelease(diagnosis);
 * @endcode
 *
 * A diagnosis is no reading of its thread: the context, the condition of the scanner and the place
 * of the current message are as before when it returns, and what it finds does not depend on what
 * was read before. The work is bounded for each text, in bytes read, so the result does not depend
 * on the machine. Several threads may diagnose at once.
 *
 * Everything that a function returns is owned by the diagnosis and lives until
 * bsdlDiagnosisRelease().
 */

#include <stddef.h>
#include <stdint.h>

#include "tarnlet/bsdl.h"

#ifdef __cplusplus
extern "C" {
#endif

/** How much a finding weighs. */
enum BsdlSeverity { BSDL_SEVERITY_ERROR = 0, BSDL_SEVERITY_WARNING = 1, BSDL_SEVERITY_NOTE = 2 };

/** A range of a file. Lines and columns count from 1, columns in bytes; the end is after the last
 * byte. A line of 0: the finding is about the file as a whole. */
typedef struct BsdlPlace {
    const char *file; /**< As handed in for the description; the path of a package file. */
    int32_t line;
    int32_t column;
    int32_t end_line;
    int32_t end_column;
} BsdlPlace;

/** A replacement of a range of the text as it was handed in. An empty range inserts, an empty text
 * deletes. */
typedef struct BsdlEdit {
    BsdlPlace place;
    const char *text; /**< Terminated; edits hold no zero byte. */
} BsdlEdit;

/** A further place that has to do with a finding. */
typedef struct BsdlRelated {
    BsdlPlace place;
    const char *text; /**< What is there, in plain words. */
} BsdlRelated;

/** One mistake. */
typedef struct BsdlFinding {
    int32_t severity;      /**< See BsdlSeverity. */
    const char *rule;      /**< Identifier, as bsdlMessageRule() gives it. */
    BsdlPlace place;       /**< Where to look. */
    const char *text;      /**< The library's own text, without line ends around it. */
    const char *hint;      /**< What is wrong and what to do, in plain words; NULL for none. */
    const char *fix;       /**< What the edits do; NULL when there are none. */
    const BsdlEdit *edits; /**< What fixes it, in the order of the text; they do not overlap. */
    uint32_t edit_count;
    int32_t fix_sure; /**< 1: the edits are certain to be what was meant; 0: a guess. */
    const BsdlRelated *related;
    uint32_t related_count;
    int32_t because;    /**< Index of the finding that this one follows from; -1: it stands for
                             itself. */
    uint32_t count;     /**< How many alike it stands for, itself counted; at least 1. */
    int32_t suppressed; /**< 1: a comment in the text turns it off. */
    const char
        *pin_map; /**< The pin map it was found with, where several were checked; else NULL. */
    const char *reason; /**< Why that comment turns it off, as written behind its colon; NULL for
                             none. */
} BsdlFinding;

/** How a text is diagnosed. All zero but for `size` is the usual way. */
typedef struct BsdlDiagnosisOptions {
    size_t size;                     /**< sizeof(BsdlDiagnosisOptions). */
    const char *package;             /**< As for readBsdl(). */
    const char *const *package_dirs; /**< Folders in which package files are looked for first. */
    size_t package_dir_count;
    const BsdlPackageText *packages; /**< As for readBsdlText(). */
    size_t package_count;
    uint32_t flags;     /**< BSDL_FLAG_STRICT or 0. */
    uint32_t as_read;   /**< 1: no fixes, no hints: the library's messages alone. */
    uint32_t verbosity; /**< With as_read: not 0: findings are the messages of all levels up to
                             this verbosity; headings and verdicts are notes without a rule. */
    int32_t (*cancelled)(void *data); /**< Asked now and then; not 0 ends the work early. */
    void *cancel_data;
    uint32_t
        comments; /**< With as_read: 1: comments that turn rules off are obeyed all the same. */
} BsdlDiagnosisOptions;

/** A diagnosis of one text. */
typedef struct BsdlDiagnosis BsdlDiagnosis;

/**
 * Diagnoses a description or PPC/PRG file.
 *
 * @param text      The bytes of the file; may be NULL when length is 0. Copied.
 * @param length    Number of bytes.
 * @param file_name What findings call the file; package files are searched beside it. Copied.
 * @param options   NULL for the usual way. Used during the call only.
 * @return A diagnosis to be given back with bsdlDiagnosisRelease(); NULL out of memory, without a
 *         file name, or when the callback has cancelled.
 */
TARNLET_API BsdlDiagnosis *bsdlDiagnose(const char *text, size_t length, const char *file_name,
                                        const BsdlDiagnosisOptions *options);

/** Gives a diagnosis back with all that it owns. NULL is ignored. */
TARNLET_API void bsdlDiagnosisRelease(BsdlDiagnosis *diagnosis);

/** Number of findings; 0 for NULL. */
TARNLET_API uint32_t bsdlFindingCount(const BsdlDiagnosis *diagnosis);

/** A finding, in the order of the text; NULL beyond the last one. */
TARNLET_API const BsdlFinding *bsdlFindingAt(const BsdlDiagnosis *diagnosis, uint32_t index);

/** The text with all edits of findings that fix a mistake of syntax, sure or not: what the rules
 * were checked on.
 * @param length Receives the number of bytes; may be NULL.
 * @return The text, terminated; that handed in when nothing was fixed. NULL for NULL. */
TARNLET_API const char *bsdlDiagnosisText(const BsdlDiagnosis *diagnosis, size_t *length);

/** The description as it was read from bsdlDiagnosisText(), with its checks run. All queries may be
 * asked; it is not to be released.
 * @return The handle; NULL when nothing could be read. */
TARNLET_API Bsdl *bsdlDiagnosisBsdl(const BsdlDiagnosis *diagnosis);

/** What was not looked at, in words: "checked up to line 184; pins, registers and boundary cells
 * were not".
 * @return The text; NULL when all was. */
TARNLET_API const char *bsdlDiagnosisUnchecked(const BsdlDiagnosis *diagnosis);

/** Whether the checks for descriptions, ISC, AIO and PRG have been run on the text. */
enum BsdlChecked {
    BSDL_CHECKED_GENERAL = 1,
    BSDL_CHECKED_ISC = 2,
    BSDL_CHECKED_AIO = 4,
    BSDL_CHECKED_PRG = 8
};

/** Set of BsdlChecked bits. */
TARNLET_API uint32_t bsdlDiagnosisChecked(const BsdlDiagnosis *diagnosis);

/**
 * @defgroup rules The catalogue of rules
 * @{
 */

/** At which level a rule is reported. */
enum BsdlRuleLevel {
    BSDL_RULE_ERROR = 0,
    BSDL_RULE_WARNING = 1,
    BSDL_RULE_EITHER = 2,    /**< The meaning says when. */
    BSDL_RULE_BY_STRICT = 3, /**< A warning, an error with BSDL_FLAG_STRICT. */
    BSDL_RULE_NOTE = 4
};

/** A rule, as people read about it. */
typedef struct BsdlRule {
    const char *id;      /**< As bsdlMessageRule() and findings give it. */
    int32_t level;       /**< See BsdlRuleLevel. */
    const char *clause;  /**< Of the standard; NULL when there is none. */
    const char *forms;   /**< Forms of the message, one a line. */
    const char *meaning; /**< What it says about the file. */
    const char *fix;     /**< How to fix the file. */
    int32_t always_on;   /**< Nonzero: why a text could not be read; nothing turns it off. */
} BsdlRule;

/** Number of rules. */
TARNLET_API uint32_t bsdlRuleCount(void);

/** A rule, in the order in which statements stand in a description; NULL beyond the last one. */
TARNLET_API const BsdlRule *bsdlRuleAt(uint32_t index);

/** The rule of that identifier; NULL for an unknown one and for NULL. */
TARNLET_API const BsdlRule *bsdlFindRule(const char *id);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
