#ifndef TARNLET_BSDL_H
#define TARNLET_BSDL_H

/**
 * @file
 * @brief The interface of tarnlet: read a boundary-scan description, check it, ask about it.
 */

/**
 * @mainpage
 *
 * tarnlet reads BSDL descriptions of devices (IEEE 1149.1 of 1990, 1994 and 2001, with the
 * statements of IEEE 1532 and IEEE 1149.6) and PPC/PRG data files. A host reads one file into a
 * handle, has it checked, asks what it holds and gives it back:
 *
 * @code
 * static void print(void *sink_data, BsdlMessage *msg)
 * {
 *     fprintf(sink_data, "%s\n", msg->text);
 * }
 *
 * BsdlContext context = {print, stderr, 2};
 * Bsdl *h = readBsdl("device.bsd", NULL, NULL, 0, &context);
 * if (h != NULL) {
 *     if (bsdlGetNumErrors(h) == 0 && bsdl_check(h) == BSDL_RESULT_OK)
 *         printf("%s: %d cells\n", bsdlComponentName(h), bsdlGetBSRLength(h));
 *     bsdlRelease(h);
 * }
 * @endcode
 *
 * ### Order of calls
 *
 * 1. readBsdl() reads a file and the package files that it uses.
 * 2. bsdlGetNumErrors(): syntax errors do not make readBsdl() fail.
 * 3. bsdl_check() applies the rules of the standard that the description names. The checks also
 *    complete the model: they build the list of pins, classify the instructions, add those
 *    instructions and registers that the standard implies, and link cells to their descriptions.
 *    So most queries give their full answer only after it.
 * 4. bsdl_check_isc(), bsdl_check_aio() or bsdl_check_prg(), where bsdlIs1532(), bsdlIsAio() or
 *    bsdlIsPrg() says that there is something for them to check. A PPC/PRG file needs
 *    bsdl_check_prg() alone.
 * 5. The queries, in any order.
 * 6. bsdlSetEbstFile() where the name matters, bsdlGenEbst(), bsdlCreateEbst().
 * 7. bsdlRelease(), or freeBsdl().
 *
 * ### Threads
 *
 * Several threads may read, check and ask at the same time, each handle being used by one thread
 * at a time. Each call of readBsdl() replaces the message context of its thread, and all later
 * messages of that thread go there, whichever handle they are about. In a thread that has read
 * nothing they go to the context of the reading that gave the handle. Many handles may be alive at
 * the same time, and a handle may be given back in another thread than it was read in.
 *
 * ### Who owns what
 *
 * The caller owns the context, which must live as long as exports are called, and the strings of
 * the list of directories, which readBsdl() reads and does not keep. IscActivityInfo and
 * IscFlowInfo records belong to the caller too, who releases them with bsdlIscFreeActivity() and
 * bsdlIscFreeFlow(). All other strings, records and lists that a function returns are owned by
 * the handle: they are not to be changed or released, and they live until freeBsdl() or
 * bsdlRelease() of that handle unless a function states less.
 *
 * ### Lists
 *
 * A list is walked with a First and a Next function; the position is kept with the list, so that
 * there is one iteration at a time over each list of a handle. Next before First gives the second
 * element unless stated otherwise. At the end of a list, and ever after, Next gives NULL
 * (functions that give numbers state their own value). A count function gives what its description
 * says for a list that is absent: for some lists that is -1, for some 0. Counting does not move the
 * position.
 *
 * ### NULL
 *
 * Every function may be called with a NULL handle and with a NULL record: it then gives its
 * value for nothing, which is NULL or 0 unless stated otherwise. Checks give 2
 * (BSDL_RESULT_NO_HANDLE) unless stated otherwise.
 *
 * ### Messages
 *
 * The library prints nothing. Each message is handed to the sink of the context if its verbosity
 * number does not exceed that of the context: 0 is used when memory runs out, 1 for syntax errors,
 * failed checks and the current step, 2 for rules that are broken, warnings and notes on packages,
 * 3 for statements and checks that passed, 4 for statements that are absent and for each file
 * tried. A few notes stand at another number. A sink may ask bsdlMessageRule(), bsdlMessageFile(),
 * bsdlMessageLine() and its like what its message is about.
 *
 * A sink may call every function, on any handle. While a check or a call for the EBST file runs on
 * a handle, a further one on the same handle does nothing and gives 100 (BSDL_RESULT_FAILED), and
 * freeBsdl() and bsdlRelease() take effect when the outer call comes back. Of a reading inside a
 * sink the outer call takes no notice: its own messages go where they went before. From then on the
 * context of the latest readBsdl() is in force.
 *
 * Packages that nest deeper than ten files end the process after a message. So does memory that
 * runs out while text is scanned or a package is searched for, or again after a call had to fail
 * for want of it.
 */

#include <stddef.h>
#include <stdint.h>

#include <glib.h>

#if defined(__GNUC__) || defined(__clang__)
#ifndef TARNLET_API
#define TARNLET_API __attribute__((visibility("default")))
#endif
#define TARNLET_PRINTF(format_at, first_at) __attribute__((format(printf, format_at, first_at)))
#define TARNLET_SENTINEL __attribute__((sentinel))
#else
#ifndef TARNLET_API
#define TARNLET_API
#endif
#define TARNLET_PRINTF(format_at, first_at)
#define TARNLET_SENTINEL
#endif

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup codes Codes
 *
 * The fields and results that hold these codes are of type int32_t (flag and bit words:
 * uint32_t), so that their width does not depend on the compiler. The numbers are part of
 * the interface.
 * @{
 */

/** Bits of the flag word of readBsdl(). */
enum BsdlFlag {
    BSDL_FLAG_BIT0 = 1u << 0,             /**< Accepted, no effect. */
    BSDL_FLAG_BIT2 = 1u << 2,             /**< Accepted, no effect. */
    BSDL_FLAG_STRICT = 1u << 3,           /**< Turns a number of warnings into errors. */
    BSDL_FLAG_BITS4_6 = 0x70,             /**< Accepted, no effect. */
    BSDL_FLAG_NO_PACKAGE_DIRS = 1u << 14, /**< The list of directories is not looked at. */
    BSDL_FLAG_FAST_READ = 1u << 15 /**< Stop reading after IDCODE_REGISTER or REGISTER_ACCESS. */
};

/** Level of a message: what kind of text it is. Messages are not filtered by level. */
enum BsdlLevel {
    BSDL_LEVEL_ERROR = 0,
    BSDL_LEVEL_WARNING = 1,
    BSDL_LEVEL_INFO = 2,    /**< A statement or a check passed, a statement is absent, a note. */
    BSDL_LEVEL_PHASE = 3,   /**< Heading of a phase. */
    BSDL_LEVEL_PROGRESS = 4 /**< The current file, package or part. */
};

/** Result codes of the checks and of the EBST functions. */
enum BsdlResult {
    BSDL_RESULT_OK = 0,
    BSDL_RESULT_ABSENT = 1,    /**< An optional statement is absent. */
    BSDL_RESULT_NO_HANDLE = 2, /**< The handle is NULL. */
    BSDL_RESULT_NO_DATA = 3,   /**< The handle holds no description. */
    BSDL_RESULT_NO_ISC = 4,    /**< The description has no IEEE 1532 statements. */
    BSDL_RESULT_MISSING = 5,   /**< A statement or table that is needed is absent. */
    BSDL_RESULT_NO_NAME = 6,   /**< bsdlSetEbstFile() without a name. */
    BSDL_RESULT_NO_AIO = 7,    /**< The description has no IEEE 1149.6 statements. */
    BSDL_RESULT_FAILED = 100   /**< A rule failed, a file was not written: the messages say which;
                                  or memory ran out. */
};

/** Result of bsdlStandard(). */
enum BsdlStandard {
    BSDL_STANDARD_NONE = 0,
    BSDL_STANDARD_1149_1_1990 = 1,
    BSDL_STANDARD_1149_1_1994 = 3,
    BSDL_STANDARD_1149_1_2001 = 4,
    BSDL_STANDARD_1532_2001 = 5,
    BSDL_STANDARD_1532_2002 = 6,
    BSDL_STANDARD_PRG_2001 = 7,
    BSDL_STANDARD_1149_6_2003 = 8
};

/** Bits and masks of the standards that a description uses. */
enum BsdlStandardBit {
    BSDL_STANDARD_BIT_1990 = 0x1,
    BSDL_STANDARD_BIT_1994 = 0x2,
    BSDL_STANDARD_BIT_2001 = 0x4,
    BSDL_STANDARD_BIT_1532_2001 = 0x40,
    BSDL_STANDARD_BIT_1532_2002 = 0x80,
    BSDL_STANDARD_BIT_PRG_2001 = 0x400,
    BSDL_STANDARD_BIT_1149_4_2005 = 0x4000,
    BSDL_STANDARD_BIT_1149_6_2003 = 0x40000,
    BSDL_STANDARD_MASK_1149_1 = 0x3F,
    BSDL_STANDARD_MASK_1532 = 0x3C0,
    BSDL_STANDARD_MASK_PRG = 0x3C00
};

/** Result of bsdlConformance(): the value of COMPONENT_CONFORMANCE. */
enum BsdlConformance {
    CONFORMANCE_NONE = 0,
    CONFORMANCE_1990 = 1,
    CONFORMANCE_1993 = 3,
    CONFORMANCE_2001 = 4
};

/** Mode of a port. Codes 6 to 9 stand for the modes 1 to 4 of a port bit that has neither a
 * boundary cell nor a role (see PinFunction); bsdl_check_bsr() sets them, but not in a strict
 * reading, where such a bit is an error. */
enum PinType {
    PIN_TYPE_NONE = 0,
    PIN_TYPE_IN = 1,
    PIN_TYPE_OUT = 2,
    PIN_TYPE_INOUT = 3,
    PIN_TYPE_BUFFER = 4,
    PIN_TYPE_LINKAGE = 5,
    PIN_TYPE_IN_NO_CELL = 6,
    PIN_TYPE_OUT_NO_CELL = 7,
    PIN_TYPE_INOUT_NO_CELL = 8,
    PIN_TYPE_BUFFER_NO_CELL = 9
};

/** Role of a port bit, given by the checks of the scan ports, port groups and compliance. */
enum PinFunction {
    PIN_FUNCTION_NONE = 0,
    PIN_FUNCTION_TDI = 1,
    PIN_FUNCTION_TDO = 2,
    PIN_FUNCTION_TCK = 3,
    PIN_FUNCTION_TMS = 4,
    PIN_FUNCTION_TRST = 5,
    PIN_FUNCTION_REPRESENTATIVE = 6,      /**< First port of a differential pair. */
    PIN_FUNCTION_ASSOCIATED = 7,          /**< Second port of a differential pair. */
    PIN_FUNCTION_COMPLIANCE = 8,          /**< Compliance enable port. */
    PIN_FUNCTION_ASSOCIATED_WITH_CELL = 9 /**< As 7, but it has a boundary cell as well. */
};

/** Kind of a differential pair. */
enum TwinType {
    TWIN_TYPE_VOLTAGE = 0, /**< DIFFERENTIAL_VOLTAGE */
    TWIN_TYPE_CURRENT = 1  /**< DIFFERENTIAL_CURRENT */
};

/** States in which TCK may be halted. */
enum HaltState { HALT_STATE_LOW = 0, HALT_STATE_BOTH = 1 };

/** Function of a boundary cell; also the context of a capture descriptor. A cell never has
 * function 9 or 10 and a capture descriptor never has context 8. */
enum CellFunction {
    CELL_FUNCTION_INPUT = 1,
    CELL_FUNCTION_OUTPUT2 = 2,
    CELL_FUNCTION_OUTPUT3 = 3,
    CELL_FUNCTION_CONTROL = 4,
    CELL_FUNCTION_CONTROLR = 5,
    CELL_FUNCTION_INTERNAL = 6,
    CELL_FUNCTION_CLOCK = 7,
    CELL_FUNCTION_BIDIR = 8,
    CELL_FUNCTION_BIDIR_IN = 9,
    CELL_FUNCTION_BIDIR_OUT = 10,
    CELL_FUNCTION_OBSERVE_ONLY = 11
};

/** Instruction of a capture descriptor. */
enum CaptureInstruction {
    CAPTURE_INSTRUCTION_EXTEST = 1,
    CAPTURE_INSTRUCTION_SAMPLE = 2,
    CAPTURE_INSTRUCTION_INTEST = 3,
    CAPTURE_INSTRUCTION_KEEPER = 4,
    CAPTURE_INSTRUCTION_RUNBIST = 5
};

/** Source of the value that a cell captures. */
enum CaptureSource {
    CAPTURE_SOURCE_PI = 1,   /**< Parallel input. */
    CAPTURE_SOURCE_PO = 2,   /**< Parallel output. */
    CAPTURE_SOURCE_CAP = 3,  /**< Capture stage: the value is kept. */
    CAPTURE_SOURCE_UPD = 4,  /**< Update stage. */
    CAPTURE_SOURCE_ZERO = 5, /**< Constant 0. */
    CAPTURE_SOURCE_ONE = 6,  /**< Constant 1. */
    CAPTURE_SOURCE_X = 7     /**< Unknown. */
};

/** Safe value of a boundary cell. Mind that the code is not the value. */
enum SafeBit {
    SAFE_BIT_NONE = 0, /**< The value in the description was refused. */
    SAFE_BIT_0 = 1,
    SAFE_BIT_1 = 2,
    SAFE_BIT_X = 3
};

/** Value of a control cell that disables the driver. Mind that the code is not the value. */
enum DisableValue {
    DISABLE_VALUE_NONE = 0, /**< No disable part, or its value was refused. */
    DISABLE_VALUE_0 = 1,
    DISABLE_VALUE_1 = 2
};

/** State of a pin whose driver is disabled. */
enum DisableResult {
    DISABLE_RESULT_NONE = 0, /**< No disable part. */
    DISABLE_RESULT_Z = 1,
    DISABLE_RESULT_WEAK0 = 2,
    DISABLE_RESULT_WEAK1 = 3,
    DISABLE_RESULT_PULL0 = 4,
    DISABLE_RESULT_PULL1 = 5,
    DISABLE_RESULT_KEEPER = 6
};

/** Class of an instruction, given by bsdl_check_instr_reg(). */
enum InstructionType {
    INSTRUCTION_TYPE_NONE = 0, /**< Not checked yet. */
    INSTRUCTION_TYPE_PUBLIC = 1,
    INSTRUCTION_TYPE_MANDATORY = 2,
    INSTRUCTION_TYPE_PRIVATE = 3
};

/** Kind of a data register, as bsdl_check_reg_access() leaves it. No function gives it. */
enum RegisterKind {
    REGISTER_KIND_BOUNDARY = 1,
    REGISTER_KIND_BYPASS = 2,
    REGISTER_KIND_IDENTIFICATION = 4, /**< DEVICE_ID; in a description of 1990 IDCODE. */
    REGISTER_KIND_DEVICE_ID = 5,      /**< DEVICE_ID that was added for IEEE 1532. */
    REGISTER_KIND_BIST = 6,           /**< Register of RUNBIST, once the EBST file was written. */
    REGISTER_KIND_USER = 7
};

/** Type of a pin in the EBST file. */
enum EbstType {
    EBST_TYPE_IN = 1,
    EBST_TYPE_OUT = 2,
    EBST_TYPE_OUTZ = 3,
    EBST_TYPE_IO = 4,
    EBST_TYPE_IOZ = 5, /**< Reserved, never assigned. */
    EBST_TYPE_NC = 6,
    EBST_TYPE_PWR = 7,
    EBST_TYPE_GND = 8,
    EBST_TYPE_TDI = 9,
    EBST_TYPE_TDO = 10,
    EBST_TYPE_TMS = 11,
    EBST_TYPE_TCK = 12,
    EBST_TYPE_TRST = 13
};

/** Result of bsdlIscConformance(). */
enum IscConformance {
    ISC_CONFORMANCE_NONE = 0,
    ISC_CONFORMANCE_1532_2001 = 1,
    ISC_CONFORMANCE_1532_2002 = 2
};

/** Result of bsdlIscPinBehavior(). */
enum IscPinBehavior {
    ISC_PIN_BEHAVIOR_NONE = 0,
    ISC_PIN_BEHAVIOR_HIGHZ = 1,
    ISC_PIN_BEHAVIOR_CLAMP = 2
};

/** Result of bsdlIscStatus(). */
enum IscStatus { ISC_STATUS_NONE = 0, ISC_STATUS_IMPLEMENTED = 1, ISC_STATUS_NOT_IMPLEMENTED = 2 };

/** Marker in the bit positions of an IscSecurity: a '*' was written. */
enum IscSecurityBit { ISC_SECURITY_ANY = -2 };

/** Exclusivity of an IscAction. */
enum IscExclusivity { ISC_EXCLUSIVITY_NONE = 0, ISC_EXCLUSIVITY_PROPRIETARY = 1 };

/** Attributes of an IscActionSpec, a set of bits; OPTIONAL and RECOMMENDED exclude each other. */
enum IscSpecAttribute {
    ISC_SPEC_PROPRIETARY = 0x1,
    ISC_SPEC_OPTIONAL = 0x10,
    ISC_SPEC_RECOMMENDED = 0x20
};

/** Operation of an IscExpression. */
enum IscOperation {
    ISC_OPERATION_HEX = 1,            /**< A hexadecimal string. */
    ISC_OPERATION_VARIABLE = 2,       /**< Value of the variable. */
    ISC_OPERATION_ASSIGN = 3,         /**< Variable becomes the hexadecimal string. */
    ISC_OPERATION_INPUT = 4,          /**< Data from the input: '?' */
    ISC_OPERATION_VARIABLE_INPUT = 6, /**< Variable set from the input. */
    ISC_OPERATION_IO = 12,            /**< Input and output: '?!' */
    ISC_OPERATION_VARIABLE_IO = 14,   /**< Variable set from the input, and output. */
    ISC_OPERATION_ADD = 18,           /**< Variable plus the operand. */
    ISC_OPERATION_SUBTRACT = 34,      /**< Variable minus the operand. */
    ISC_OPERATION_SHIFT_LEFT = 50,    /**< Variable shifted left by the operand. */
    ISC_OPERATION_SHIFT_RIGHT = 66,   /**< Variable shifted right by the operand. */
    ISC_OPERATION_COMPLEMENT = 82     /**< Complement of the variable. */
};

/** Output mark of the expected data or of the mask of an IscCaptureField. */
enum IscOutput {
    ISC_OUTPUT_NONE = 0,
    ISC_OUTPUT_GIVEN = 5 /**< '!' was written. */
};

/** Tag of an IscCaptureField. */
enum IscTag { ISC_TAG_NONE = 0, ISC_TAG_CRC = 1, ISC_TAG_OST = 2, ISC_TAG_CRC_OST = 3 };

/** Kind of an activity: a loop is two markers with its activities between them. */
enum IscActivityKind {
    ISC_ACTIVITY_PLAIN = 0,
    ISC_ACTIVITY_LOOP_START = 1,
    ISC_ACTIVITY_LOOP_END = 2
};

/** Special results of bsdlIscFirstFlowBlock() and bsdlIscNextFlowBlock(); a positive result is
 * the count of a repeat block. */
enum IscBlockCode { ISC_BLOCK_TERMINATE = -2, ISC_BLOCK_INITIALIZE = -1, ISC_BLOCK_NONE = 0 };

/** Bits of IscFlowInfo.flags: words of the flow's own definition. */
enum IscFlowFlag { ISC_FLOW_UNPROCESSED = 0x20, ISC_FLOW_EXIT_ON_ERROR = 0x40 };

/** Result of bsdlAioConformance(). */
enum AioConformance { AIO_CONFORMANCE_NONE = 0, AIO_CONFORMANCE_1149_6_2003 = 1 };

/** Bits of AioPinResult.flags: which of its fields hold a value. */
enum AioFlag {
    AIO_FLAG_SELECT_CELL = 0x1,
    AIO_FLAG_LP_TIME = 0x2,
    AIO_FLAG_HP_TIME = 0x4,
    AIO_FLAG_ON_CHIP = 0x8, /**< The high-pass filter is on the chip. */
    AIO_FLAG_INPUT_CELL = 0x10
};

/** Type of a program in a PPC/PRG file. */
enum PrgProgramType {
    PRG_PROGRAM_TYPE_ISC = 1,
    PRG_PROGRAM_TYPE_SVF = 2,
    PRG_PROGRAM_TYPE_STAPL = 3,
    PRG_PROGRAM_TYPE_JAM = 4,
    PRG_PROGRAM_TYPE_JCS = 0x8000 /**< Plus the number that the file gives. */
};

/** @} */

/**
 * @defgroup records Records
 *
 * Records that are declared without fields are reached through functions only. Callers read the
 * fields of the others in place: their order and types are part of the interface and do not
 * change. A string field may be NULL where its description says so.
 * @{
 */

/** One reading of one file; the handle. */
typedef struct Bsdl Bsdl;
/** One bit of a port with its physical pin. */
typedef struct PinEntry PinEntry;
/** One instruction of the opcode table, or one that the checks added. */
typedef struct InstructionEntry InstructionEntry;
/** One row of the boundary register table. */
typedef struct CellEntry CellEntry;
/** One pin of the EBST file. */
typedef struct EbstPin EbstPin;

/** A message as a sink receives it. */
typedef struct BsdlMessage {
    int32_t level;      /**< See BsdlLevel. */
    uint32_t verbosity; /**< Number that was compared with the one of the context. */
    int32_t code;       /**< Always 0. */
    const char *text;   /**< Terminated, at most 10000 characters; valid during the call only. */
    int32_t formatted;  /**< Always 1. */
} BsdlMessage;

/** Where messages go. The caller owns it and keeps it until no export will be called again. */
typedef struct BsdlContext {
    /** Called for each message on the thread of the running export; NULL drops all messages. It may
     * call every function, see Messages above. */
    void (*message_sink)(void *sink_data, BsdlMessage *msg);
    void *sink_data;    /**< First argument of message_sink; the library does not look at it. */
    uint32_t verbosity; /**< Messages with a higher number are dropped; may change at any time. */
} BsdlContext;

/** Reference to a port bit. */
typedef struct PortId {
    const char *name;    /**< As written, case kept. */
    int32_t subscripted; /**< 1 for one bit of a vector, 0 for a port as a whole. */
    int32_t subscript;   /**< Index of the bit; 0 when not subscripted. */
} PortId;

/** One pair of differential ports. There is one such record for each handle: read it before the
 * next call. */
typedef struct PortGroup {
    int32_t type; /**< See TwinType. */
    PortId *representative;
    PortId *associated;
} PortGroup;

/** Bits of ISC_Security: positions in the register ISC_PDATA, or ISC_SECURITY_ANY. */
typedef struct IscSecurity {
    int32_t disable_read;
    int32_t disable_program;
    int32_t disable_erase;
    int32_t disable_key_lsb;
    int32_t disable_key_msb;
} IscSecurity;

/** One action of ISC_Action. */
typedef struct IscAction {
    const char *action_name;
    const char *data_name; /**< NULL when none is given. */
    int32_t exclusivity;   /**< See IscExclusivity. */
    GSList *specs;         /**< The IscActionSpec records in file order. */
    int32_t spec_cursor;   /**< State of the iteration over specs. */
} IscAction;

/** One procedure that an action runs. */
typedef struct IscActionSpec {
    const char *procedure_name;
    const char *data_name; /**< NULL when none is given. */
    int32_t attributes;    /**< See IscSpecAttribute. */
} IscActionSpec;

/** Data expression of an update or capture field. */
typedef struct IscExpression {
    int32_t operation;      /**< See IscOperation. */
    int32_t variable_index; /**< Index of the variable in its flow; -1 without a variable. */
    int32_t operand;        /**< Second operand of an arithmetic or shift operation. */
    const char *hex_string; /**< For ISC_OPERATION_HEX and ISC_OPERATION_ASSIGN, else NULL. */
    int32_t is_definition;  /**< 1 when this expression gives the variable its length. */
} IscExpression;

/** One field to shift in. */
typedef struct IscUpdateField {
    int32_t field_width;       /**< In bits. */
    IscExpression *expression; /**< NULL when none is given. */
} IscUpdateField;

/** One field to shift out and compare. */
typedef struct IscCaptureField {
    int32_t field_width;     /**< In bits. */
    IscExpression *expected; /**< NULL when none is given. */
    int32_t expected_output; /**< See IscOutput. */
    IscExpression *mask;     /**< NULL when none is given. */
    int32_t mask_output;     /**< See IscOutput. */
    int32_t tag;             /**< See IscTag. */
} IscCaptureField;

/** One activity or loop marker; release it with bsdlIscFreeActivity().
 *
 * For an activity, v holds the shortest wait as clock cycles and microseconds, rounded up, then the
 * longest wait in the same way, rounded down; a value that is not given is 0. For a loop marker
 * instruction_name is NULL and v holds the kind (see IscActivityKind), the largest and the smallest
 * number of loops, and 0; at the end of a loop the kind alone. */
typedef struct IscActivityInfo {
    const char *instruction_name; /**< Owned by the handle. */
    int32_t v[4];
    int32_t reserved[2]; /**< Always 0. */
} IscActivityInfo;

/** One flow or procedure; release it with bsdlIscFreeFlow(). */
typedef struct IscFlowInfo {
    const char *flow_name;  /**< Owned by the handle. */
    const char *data_name;  /**< Owned by the handle; NULL when none is given. */
    uint32_t flags;         /**< See IscFlowFlag. */
    int32_t variable_count; /**< Number of variables of the flow. */
} IscFlowInfo;

/** Parameters of AIO_EXTEST_Pulse_Execution; one of the two values is 0. */
typedef struct AioPulseResult {
    int32_t cycle_count; /**< In clock cycles. */
    float time;          /**< In seconds. */
} AioPulseResult;

/** Parameters of AIO_EXTEST_Train_Execution. */
typedef struct AioTrainResult {
    int32_t pulse_count;
    float max_time; /**< In seconds; 0 when none is given. */
} AioTrainResult;

/** AC behaviour of one port bit. There is one such record for each handle: read it before the
 * next call. */
typedef struct AioPinResult {
    PortId *port;
    uint32_t flags;      /**< See AioFlag; a field whose bit is clear holds no value. */
    int32_t select_cell; /**< Number of the cell that selects AC mode. */
    float lp_time;       /**< Low-pass time constant in seconds. */
    float hp_time;       /**< High-pass time constant in seconds. */
    int32_t input_cell;  /**< Number of the cell that observes the bit. */
} AioPinResult;

/** Analog test bus of an IEEE 1149.4 device. What the numbers in this and the next two records
 * mean is a matter of the device: they are handed out as the table has them. */
typedef struct D4AtBus {
    PortId *at1;
    PortId *at2;
    int32_t value[2];
} D4AtBus;

/** Partition of the test bus interface circuit of an IEEE 1149.4 device. */
typedef struct D4Partition {
    int32_t value[6];
} D4Partition;

/** Analog boundary module of an IEEE 1149.4 device. */
typedef struct D4Abm {
    int32_t abm_number;
    PortId *pin;
    int32_t value[12];
} D4Abm;

/** What a PPC/PRG file loads into one part of a scan chain. */
typedef struct PrgComponentSetting {
    const char *part_name;
    const char *instruction_name;
    const char *register_values; /**< All patterns of the setting, joined. */
} PrgComponentSetting;

/** One program of a PPC/PRG file. */
typedef struct PrgProgramSpec {
    int32_t program_type; /**< See PrgProgramType. */
    const char *part_name;
    const char *part_type;
    const char *in_file;  /**< NULL when none is given. */
    const char *out_file; /**< NULL when none is given. */
    void *component;      /**< Set on selection; not for callers. */
} PrgProgramSpec;

/** @} */

/**
 * @defgroup reading Reading and messages
 * @{
 */

/**
 * Reads a description or a PPC/PRG file.
 *
 * Syntax errors do not make it fail: the result is a handle whenever the name of the component
 * could be read. A NULL result leaves nothing to release; the reason has been sent as a message,
 * except for a NULL context and when memory has run out.
 *
 * @param file_name    File to read; the name is copied.
 * @param package      Name of the pin mapping to use; NULL for the default that the description
 *                     gives. An empty name is a name. Copied.
 * @param package_dirs Directories to search for package files before the places that are
 *                     always searched, a list of strings or NULL; see bsdlUsrPackDirs(). It is
 *                     used during the call only.
 * @param flags        Set of BsdlFlag bits.
 * @param context      Where messages go, from now on in this thread and for all handles. It is not
 *                     copied and must outlive the use of the library in this thread, or its next
 *                     call of readBsdl(), and the use of the handle in other threads.
 * @return A handle to be given back with bsdlRelease() or freeBsdl(), or NULL.
 */
TARNLET_API Bsdl *readBsdl(const char *file_name, const char *package, GSList *package_dirs,
                           uint32_t flags, BsdlContext *context);

/** The text of a package file that readBsdlText() takes in place of a file. */
typedef struct BsdlPackageText {
    const char *name; /**< As a use statement asks for it, "STD_1532_2002.ALL" for example; letter
                           case does not count. */
    const char *file_name; /**< What messages call it; NULL for the name. A text with an empty name
                                is no file of bsdlGetFirstDotALLFileSpec(). */
    const char *text;
    size_t length; /**< Of the text in bytes. */
} BsdlPackageText;

/**
 * Reads a description or a PPC/PRG file from memory: as readBsdl() would read a file of that name
 * with these bytes, and with the same messages.
 *
 * It never ends the process: where readBsdl() has to, it gives NULL after the message.
 *
 * @param text          The bytes; they are copied and may hold anything. May be NULL when length is
 *                      0.
 * @param length        Number of bytes.
 * @param file_name     What messages call the file; packages are searched beside it.
 * @param package       As for readBsdl().
 * @param package_dirs  As for readBsdl().
 * @param flags         As for readBsdl().
 * @param context       As for readBsdl().
 * @param packages      Texts that win over the search for package files of their names; the first
 * of a name counts. May be NULL when package_count is 0. Used during the call only.
 * @param package_count Number of these texts.
 * @return As for readBsdl(); NULL for a NULL text that has a length.
 */
TARNLET_API Bsdl *readBsdlText(const char *text, size_t length, const char *file_name,
                               const char *package, GSList *package_dirs, uint32_t flags,
                               BsdlContext *context, const BsdlPackageText *packages,
                               size_t package_count);

/**
 * Releases what was read. The handle itself, its names of files and of the pin mapping and the
 * standards in use stay: bsdlFileName(), bsdlGetDefaultDevicePackage(), bsdlGetNumErrors(),
 * bsdlStandard() and the queries on one standard go on answering, but for bsdlStandard1149_1() and
 * bsdlIs1532(); these and all others give their value for no data. A host that reads many files
 * calls bsdlRelease() instead, or afterwards.
 *
 * @return 0 if an EBST record had been generated; 1 if none had, which is no failure, and for a
 *         NULL handle or one that was released before.
 */
TARNLET_API int32_t freeBsdl(Bsdl *h);

/** Releases a handle wholly, whether freeBsdl() was called for it or not. The handle and all that
 * it owns must not be used any more. NULL is ignored. */
TARNLET_API void bsdlRelease(Bsdl *h);

/** Number of syntax errors of the reading; what checks find is not counted.
 * @return The number; -1 for a NULL handle. */
TARNLET_API int32_t bsdlGetNumErrors(Bsdl *h);

/**
 * Sends a message to the sink of the thread's latest reading, for hosts that want their own texts
 * in the same stream. Nothing happens before the first reading, for a NULL format, or if the
 * context filters the message out.
 *
 * @param level     See BsdlLevel.
 * @param verbosity Number that the one of the context must reach.
 * @param format    As for printf(); the text is cut after 10000 characters.
 */
TARNLET_API void bsdl_msg(int32_t level, uint32_t verbosity, const char *format, ...)
    TARNLET_PRINTF(3, 4);

/** Place that the current message is about, from its first byte to the one after its last: the
 * token that a syntax error found; the name, number, table row or statement that a rule is about.
 * For what is missing, it is that of what demands it. Headings have no place.
 * @return A line counted from 1; 0 if there is none, and outside a message sink. */
TARNLET_API int32_t bsdlMessageLine(void);

/** Column in which the place begins.
 * @return A byte of the line counted from 1; 0 without a place, and outside a message sink. */
TARNLET_API int32_t bsdlMessageColumn(void);

/** Line on which the place ends.
 * @return A line counted from 1; 0 without a place, and outside a message sink. */
TARNLET_API int32_t bsdlMessageEndLine(void);

/** Column after the last byte of the place; bsdlMessageColumn() for an empty place, such as the
 * end of a file.
 * @return A byte of the line counted from 1; 0 without a place, and outside a message sink. */
TARNLET_API int32_t bsdlMessageEndColumn(void);

/** A token that could have stood where a syntax error found another. */
typedef struct BsdlExpected {
    const char *name; /**< As the texts of messages name it, such as "';'", "IS" or "IDENTIFIER". */
    const char
        *text; /**< What one could write, such as ";", "IS"; NULL for names, numbers, ends. */
} BsdlExpected;

/** All tokens that the parser could have gone on with, where the current message is a syntax
 * error; its text names them when they are at most four.
 * @param count Gets their number, 0 without any; may be NULL.
 * @return The tokens, valid during the call of the sink; NULL for other messages, and outside a
 *         message sink. */
TARNLET_API const BsdlExpected *bsdlMessageExpected(int32_t *count);

/** File that the current message is about: the description or a package file.
 * @return The name, valid during the call of the sink; NULL if there is none, and outside a
 *         message sink. */
TARNLET_API const char *bsdlMessageFile(void);

/** Identifier of the rule that the current message is about, such as "cell-number-missing".
 * Identifiers are stable: a host that looks for certain messages goes by them, not by the texts.
 * @return The identifier, valid during the call of the sink; NULL if there is none, and outside
 *         a message sink. */
TARNLET_API const char *bsdlMessageRule(void);

/** @} */

/**
 * @defgroup packages Package files
 *
 * A package is searched for in the caller's directories, in the current directory, beside the
 * description, in the directory that the environment variable BST64 names, beside the library,
 * and among the packages that are installed with it.
 * @{
 */

/**
 * Makes a list of directories for readBsdl(). The strings are not copied.
 *
 * @param first First directory, further ones after it, and NULL at the end. For a list that is
 *              to be given to bsdlFreeUsrPackDirs() they must come from g_malloc() or malloc().
 * @return A new list, released with bsdlFreeUsrPackDirs(), or with g_slist_free() where the strings
 *         are not to be released; NULL if first is NULL.
 */
TARNLET_API GSList *bsdlUsrPackDirs(const char *first, ...) TARNLET_SENTINEL;

/** Releases a list that bsdlUsrPackDirs() made, with its strings. NULL is ignored. */
TARNLET_API void bsdlFreeUsrPackDirs(GSList *dirs);

/** First package file that was read. Files of the standard packages (IEEE 1532, IEEE 1149.6,
 * PPC/PRG) under their own names are passed over.
 * @return The full path; NULL without one. */
TARNLET_API const char *bsdlGetFirstDotALLFileSpec(Bsdl *h);

/** Next package file, as bsdlGetFirstDotALLFileSpec().
 * @return The full path; NULL at the end. */
TARNLET_API const char *bsdlGetNextDotALLFileSpec(Bsdl *h);

/** First package name of the use statements that name packages of a user.
 * @return The name as written, with its ".all"; NULL without one. */
TARNLET_API const char *bsdlGetFirstDotALLSpec(Bsdl *h);

/** Next package name, as bsdlGetFirstDotALLSpec().
 * @return The name as written, with its ".all"; NULL at the end. */
TARNLET_API const char *bsdlGetNextDotALLSpec(Bsdl *h);

/** @} */

/**
 * @defgroup standards Standards and header
 *
 * These are known as soon as the file has been read.
 * @{
 */

/** Name and version of the library. Either pointer may be NULL.
 * @param name    Receives a constant string.
 * @param version Receives a constant string of four numbers. */
TARNLET_API void bsdlLibVersion(const char **name, const char **version);

/** The standard that governs the description. The issue of IEEE 1149.1 that the description uses
 * comes before IEEE 1532 and IEEE 1149.6, which are told by bsdlIs1532() and bsdlIsAio().
 * @return See BsdlStandard. */
TARNLET_API int32_t bsdlStandard(Bsdl *h);

/** Package name of the IEEE 1149.1 issue in use, such as "STD_1149_1_2001".
 * @return The name; NULL without one, and after freeBsdl(). */
TARNLET_API const char *bsdlStandard1149_1(Bsdl *h);

/** "STD_1532_2001" or "STD_1532_2002", of both the first.
 * @return A constant string; NULL if neither package is used. */
TARNLET_API const char *bsdlStandard1532(Bsdl *h);

/** "STD_1149_4_2005". No statement of a description selects this standard: see bsdlDot4().
 * @return A constant string or NULL. */
TARNLET_API const char *bsdlStandard1149_4(Bsdl *h);

/** "STD_1149_6_2003".
 * @return A constant string; NULL if the package is not used. */
TARNLET_API const char *bsdlStandard1149_6(Bsdl *h);

/** "STD_PRG_2001".
 * @return A constant string; NULL if the file is no PPC/PRG file. */
TARNLET_API const char *bsdlStandardPrg(Bsdl *h);

/** Whether STD_1149_1_1990 is in use.
 * @return BSDL_STANDARD_BIT_1990 or 0. */
TARNLET_API uint32_t bsdlIs1990(Bsdl *h);

/** Whether STD_1149_1_1994 is in use.
 * @return BSDL_STANDARD_BIT_1994 or 0. */
TARNLET_API uint32_t bsdlIs1994(Bsdl *h);

/** Whether STD_1149_1_2001 is in use.
 * @return BSDL_STANDARD_BIT_2001 or 0. */
TARNLET_API uint32_t bsdlIs2001(Bsdl *h);

/** Whether a package of IEEE 1532 is in use.
 * @return The bits within BSDL_STANDARD_MASK_1532; 0 for a PPC/PRG file, and after freeBsdl(). */
TARNLET_API uint32_t bsdlIs1532(Bsdl *h);

/** Whether the file is a PPC/PRG file.
 * @return The bits within BSDL_STANDARD_MASK_PRG. */
TARNLET_API uint32_t bsdlIsPrg(Bsdl *h);

/** Whether the package of IEEE 1149.6 is in use.
 * @return BSDL_STANDARD_BIT_1149_6_2003 or 0. */
TARNLET_API uint32_t bsdlIsAio(Bsdl *h);

/** Value of COMPONENT_CONFORMANCE.
 * @return See BsdlConformance; 0 without the statement. */
TARNLET_API int32_t bsdlConformance(Bsdl *h);

/** Name of the file as given to readBsdl().
 * @return The name, which outlives freeBsdl() and ends with bsdlRelease(); NULL for a NULL
 *         handle. */
TARNLET_API const char *bsdlFileName(Bsdl *h);

/** Name of the entity; in a PPC/PRG file the name of the design.
 * @return The name, NULL without data. */
TARNLET_API const char *bsdlComponentName(Bsdl *h);

/** Name of the pin mapping to use: what was given to readBsdl(), else the default of the generic
 * parameter.
 * @return The name, also after freeBsdl(), whether there is such a mapping or not; NULL if neither
 *         is there. */
TARNLET_API const char *bsdlGetDefaultDevicePackage(Bsdl *h);

/** @} */

/**
 * @defgroup components Lists of components
 *
 * Helpers for hosts that keep a list of their own; the library keeps none. The list and what it
 * points at belong to the caller.
 * @{
 */

/** Does nothing.
 * @return 0. */
TARNLET_API int32_t bsdlInitComponentList(void);

/** Does nothing: the list belongs to the caller, who releases it with g_list_free(). */
TARNLET_API void bsdlFreeComponentList(GList *list);

/** Length of a list.
 * @return The length; 0 for NULL. */
TARNLET_API int32_t bsdlGetNbrOfComponents(GList *list);

/** Data of the first cell of a list.
 * @return The data; NULL for an empty list. */
TARNLET_API void *bsdlGetFirstComponent(GList *list);

/** Data of the next cell.
 * @return The data; NULL at the end and for NULL. */
TARNLET_API void *bsdlGetNextComponent(GList *cell);

/** Appends to a list, as g_list_append().
 * @return The start of the list, which is new if the list was empty. */
TARNLET_API GList *bsdlAddComponent(GList *list, void *component);

/** Finds a pointer in a list, as g_list_find().
 * @return The cell that holds the same pointer, or NULL. */
TARNLET_API GList *bsdlFindComponent(GList *list, const void *component);

/** @} */

/**
 * @defgroup checks Checks of a description
 *
 * Each check sends a message for every rule that is broken, goes on to the end and returns a
 * BsdlResult. bsdl_check() runs them all in their order; some build on what earlier ones have put
 * into the model, so that a host that calls them one by one keeps the order in which they stand
 * here. It does so in place of bsdl_check() and calls each once for a handle: a second run of
 * bsdl_check_scan_port(), bsdl_check_compliance() or bsdl_check_extensions() takes what the first
 * one has done for a fault. Only those results that a check can give beyond 0, 2, 3 and 100 are
 * named.
 * @{
 */

/**
 * Runs the fourteen checks from bsdl_check_generic() to bsdl_check_extensions() and sends one
 * line for each; bsdl_check_pin_map() is none of them. After a fast read only the first of them
 * runs, each time anew, and the result is 0 whatever it finds.
 *
 * Otherwise the outcome is kept: a second call gives it again at once and sends nothing.
 * @return 0, 2, 3 or 100.
 */
TARNLET_API int32_t bsdl_check(Bsdl *h);

/** Selects the pin mapping that was asked for; see bsdlGetDefaultDevicePackage().
 * @return Also 5 without pin mappings. */
TARNLET_API int32_t bsdl_check_generic(Bsdl *h);

/** Names of ports are unique.
 * @return Also 5 without a port clause. */
TARNLET_API int32_t bsdl_check_logical_port(Bsdl *h);

/** Packages are consistent, capture descriptors obey the rules of the standard. Adds the cell
 * descriptions of packages to those that are built in; a further call adds them again. */
TARNLET_API int32_t bsdl_check_packages(Bsdl *h);

/** Every pin mapping agrees with the port clause. Builds the list of pins from the mapping that
 * bsdl_check_generic() has selected, or from the only one; after 100 there may be no list. A list
 * of more than 4,000,000 pins is not built.
 * @return Also 5 without pin mappings or a port clause. */
TARNLET_API int32_t bsdl_check_all_pin_maps(Bsdl *h);

/** Checks the one pin mapping of that name, for hosts; bsdl_check() does not call it.
 * @return Also 5 for a NULL name, even with a NULL handle, and without pin mappings or a port
 *         clause; 100 if there is no such mapping. */
TARNLET_API int32_t bsdl_check_pin_map(Bsdl *h, const char *name);

/** Differential pairs: sets the functions of their pins and links the two.
 * @return Also 1 without PORT_GROUPING, 5 without ports, pins or boundary register. */
TARNLET_API int32_t bsdl_check_grouped_port(Bsdl *h);

/** Test access port: sets the functions of its pins.
 * @return Also 5 without boundary register. */
TARNLET_API int32_t bsdl_check_scan_port(Bsdl *h);

/** Compliance patterns: sets the functions of their pins.
 * @return Also 1 without COMPLIANCE_PATTERNS, 5 without pins. */
TARNLET_API int32_t bsdl_check_compliance(Bsdl *h);

/** Opcodes. Classifies the instructions, adds BYPASS if it has no opcode of ones and, unless the
 * description conforms to the issue of 2001, EXTEST if it has no opcode of zeros, puts the preload
 * instruction first and turns opcodes into upper case. Gives 0 without opcodes. */
TARNLET_API int32_t bsdl_check_instr_reg(Bsdl *h);

/** IDCODE and USERCODE.
 * @return 0 or 100; 0 also for a NULL handle and without data. */
TARNLET_API int32_t bsdl_check_optional_reg(Bsdl *h);

/** Register access. Adds the registers that the standard implies, links each instruction to its
 * register and sets the lengths of the registers.
 * @return Also 5 without opcodes or boundary register. */
TARNLET_API int32_t bsdl_check_reg_access(Bsdl *h);

/** Boundary register: numbers, cell types, control cells, and each cell against its port. Links
 * cells to their descriptions and merged cells to each other, and gives pins without a cell the
 * types 6 to 9.
 * @return Also 5 without boundary register, cells, ports or pins. */
TARNLET_API int32_t bsdl_check_bsr(Bsdl *h);

/** RUNBIST_EXECUTION.
 * @return Also 1 without the statement, 5 without its wait, opcodes or register access. */
TARNLET_API int32_t bsdl_check_runbist(Bsdl *h);

/** INTEST_EXECUTION.
 * @return Also 1 without the statement, 5 without its wait or opcodes. */
TARNLET_API int32_t bsdl_check_intest(Bsdl *h);

/** Every extension that is defined has been declared. Declarations are given up by it, so it
 * gives its full answer once. */
TARNLET_API int32_t bsdl_check_extensions(Bsdl *h);

/** @} */

/**
 * @defgroup cell_descs Cell descriptions
 *
 * After readBsdl() these are the built-in cells of the standard in use; bsdl_check_packages() adds
 * those of the packages. The cells of two lists serve as references: one list of cell
 * descriptions, and for each of them one list of capture descriptors.
 * @{
 */

/** First cell description.
 * @return A cell of the list of descriptions; NULL for an empty list. */
TARNLET_API GSList *bsdlGetFirstCellDesc(Bsdl *h);

/** Next cell description.
 * @return A cell of the list of descriptions; NULL at the end. */
TARNLET_API GSList *bsdlGetNextCellDesc(Bsdl *h);

/** Name of a cell description, as written.
 * @param cell From bsdlGetFirstCellDesc() or bsdlGetNextCellDesc(). */
TARNLET_API const char *bsdlGetCellDescName(GSList *cell);

/** Name of the package that holds a cell description.
 * @return The name; NULL for a built-in cell. */
TARNLET_API const char *bsdlGetCellDescPackage(GSList *cell);

/** First capture descriptor of a cell description.
 * @return A cell of its list of descriptors; NULL without one. */
TARNLET_API GSList *bsdlGetCellFirstCaptDesc(GSList *cell);

/** Next capture descriptor of a cell description. Mind that it takes the description, not the
 * descriptor before.
 * @return A cell of its list of descriptors; NULL at the end. */
TARNLET_API GSList *bsdlGetCellNextCaptDesc(GSList *cell);

/** Function of the cell that a capture descriptor is for.
 * @return See CellFunction; 0 for nothing. */
TARNLET_API int32_t bsdlGetCellCaptContext(GSList *capt);

/** Instruction that a capture descriptor is for.
 * @return See CaptureInstruction; 0 for nothing. */
TARNLET_API int32_t bsdlGetCellCaptInstr(GSList *capt);

/** What is captured.
 * @return See CaptureSource; 0 for nothing. */
TARNLET_API int32_t bsdlGetCellCaptSource(GSList *capt);

/** @} */

/**
 * @defgroup ports Ports and pins
 *
 * The list of pins has an element for each port bit, in the order of the port clause and of the
 * ranges. bsdl_check_all_pin_maps() builds it, hence bsdl_check() does. The functions of the pins
 * come from the checks of port groups, scan ports and compliance.
 * @{
 */

/** Number of pins.
 * @return The number; -1 without a list of pins. */
TARNLET_API int32_t bsdlGetNbrOfPins(Bsdl *h);

/** First pin.
 * @return The pin; NULL without a list of pins. */
TARNLET_API PinEntry *bsdlGetFirstPin(Bsdl *h);

/** Next pin.
 * @return The pin; NULL at the end. */
TARNLET_API PinEntry *bsdlGetNextPin(Bsdl *h);

/** The port bit of a pin. */
TARNLET_API PortId *bsdlGetPinPortID(PinEntry *pin);

/** Mode of a pin.
 * @return See PinType; 6 to 9 come from bsdl_check_bsr(). */
TARNLET_API int32_t bsdlGetPinType(PinEntry *pin);

/** Role of a pin.
 * @return See PinFunction; 0 before the checks that give it. */
TARNLET_API int32_t bsdlGetPinFunction(PinEntry *pin);

/** Name of the physical pin in the mapping in use.
 * @return The name; NULL if the mapping does not give one, "" for a NULL pin. */
TARNLET_API const char *bsdlGetPinPhysicalName(PinEntry *pin);

/** Port of TAP_SCAN_CLOCK; NULL without the statement. No check is needed. */
TARNLET_API PortId *bsdlGetTckPortId(Bsdl *h);

/** Port of TAP_SCAN_IN; NULL without the statement. No check is needed. */
TARNLET_API PortId *bsdlGetTdiPortId(Bsdl *h);

/** Port of TAP_SCAN_MODE; NULL without the statement. No check is needed. */
TARNLET_API PortId *bsdlGetTmsPortId(Bsdl *h);

/** Port of TAP_SCAN_OUT; NULL without the statement. No check is needed. */
TARNLET_API PortId *bsdlGetTdoPortId(Bsdl *h);

/** Port of TAP_SCAN_RESET, which is optional; NULL without the statement. No check is needed. */
TARNLET_API PortId *bsdlGetTrstPortId(Bsdl *h);

/** Highest frequency of TCK.
 * @return The frequency in hertz; 0.0 without TAP_SCAN_CLOCK. No check is needed. */
TARNLET_API double bsdlGetTckFrequency(Bsdl *h);

/** States in which TCK may be halted.
 * @return See HaltState; -1 without TAP_SCAN_CLOCK. No check is needed. */
TARNLET_API int32_t bsdlGetTckHaltState(Bsdl *h);

/** Number of pin mappings.
 * @return The number; 0 without one. No check is needed. */
TARNLET_API int32_t bsdlGetNbrOfPinMaps(Bsdl *h);

/** Name of the first pin mapping.
 * @return The name; NULL without one, or if the mapping has a syntax error. */
TARNLET_API const char *bsdlGetFirstPinMap(Bsdl *h);

/** Name of the next pin mapping.
 * @return The name; NULL at the end, and for a mapping with a syntax error, after which the
 *         iteration can go on: count with bsdlGetNbrOfPinMaps(). */
TARNLET_API const char *bsdlGetNextPinMap(Bsdl *h);

/** Number of differential pairs, of all kinds.
 * @return The number; -1 without PORT_GROUPING. No check is needed. */
TARNLET_API int32_t bsdlGetNbrOfPortGroups(Bsdl *h);

/** First differential pair.
 * @return The one record of the handle, which the next call overwrites; NULL without one. */
TARNLET_API PortGroup *bsdlGetFirstPortGroup(Bsdl *h);

/** Next differential pair; without bsdlGetFirstPortGroup() before it, the first.
 * @return The one record of the handle, which the next call overwrites; NULL at the end. */
TARNLET_API PortGroup *bsdlGetNextPortGroup(Bsdl *h);

/** Number of compliance ports.
 * @return The number; -1 without COMPLIANCE_PATTERNS. No check is needed. */
TARNLET_API int32_t bsdlGetNbrOfComplPorts(Bsdl *h);

/** First compliance port.
 * @return The port; NULL without COMPLIANCE_PATTERNS. */
TARNLET_API PortId *bsdlGetFirstComplPort(Bsdl *h);

/** Next compliance port.
 * @return The port; NULL at the end. */
TARNLET_API PortId *bsdlGetNextComplPort(Bsdl *h);

/** Number of compliance patterns.
 * @return The number; -1 without COMPLIANCE_PATTERNS. No check is needed. */
TARNLET_API int32_t bsdlGetNbrOfComplPatterns(Bsdl *h);

/** First compliance pattern, one character of "01X" for each compliance port in order; X may be a
 * small letter.
 * @return The pattern; NULL without COMPLIANCE_PATTERNS. */
TARNLET_API const char *bsdlGetFirstComplPattern(Bsdl *h);

/** Next compliance pattern.
 * @return The pattern; NULL at the end. */
TARNLET_API const char *bsdlGetNextComplPattern(Bsdl *h);

/** @} */

/**
 * @defgroup instructions Instructions and registers
 *
 * Patterns are strings of the characters "01X", most significant bit first. Opcodes are in upper
 * case after bsdl_check_instr_reg(). Before it, and in the patterns of all other statements, an X
 * is as written and may be a small letter; only a pattern that is a lone X is always "X".
 * Instruction and register names are in upper case. The list of instructions may grow and change
 * its order in bsdl_check_instr_reg(); registers are linked by bsdl_check_reg_access().
 * @{
 */

/** INSTRUCTION_LENGTH.
 * @return The length in bits; 0 if none was read. */
TARNLET_API int32_t bsdlGetInstructionLength(Bsdl *h);

/** Number of instructions.
 * @return The number; 0 without opcodes. */
TARNLET_API int32_t bsdlGetNbrOfInstructions(Bsdl *h);

/** First instruction; after bsdl_check_instr_reg() the preload instruction, if there is one.
 * @return The instruction; NULL without opcodes. */
TARNLET_API InstructionEntry *bsdlGetFirstInstruction(Bsdl *h);

/** Next instruction.
 * @return The instruction; NULL at the end. */
TARNLET_API InstructionEntry *bsdlGetNextInstruction(Bsdl *h);

/** Name of an instruction, in upper case. */
TARNLET_API const char *bsdlGetInstructionName(InstructionEntry *e);

/** Class of an instruction.
 * @return See InstructionType; 0 before bsdl_check_instr_reg(). */
TARNLET_API int32_t bsdlGetInstructionType(InstructionEntry *e);

/** Whether an instruction preloads the boundary register: PRELOAD if the description conforms to
 * the issue of 2001, else SAMPLE.
 * @return 1 or 0; 0 before bsdl_check_instr_reg(). */
TARNLET_API int32_t bsdlIsInstrPreload(InstructionEntry *e);

/** Number of opcodes of an instruction.
 * @return The number; 0 without one. */
TARNLET_API int32_t bsdlGetNbrOfInstrPatterns(InstructionEntry *e);

/** First opcode of an instruction.
 * @return The opcode; NULL without one. */
TARNLET_API const char *bsdlGetFirstInstrPattern(InstructionEntry *e);

/** Next opcode of an instruction.
 * @return The opcode; NULL at the end. */
TARNLET_API const char *bsdlGetNextInstrPattern(InstructionEntry *e);

/** Number of INSTRUCTION_CAPTURE patterns.
 * @return The number; 0 without one. No check is needed. */
TARNLET_API int32_t bsdlGetNbrOfInstructionCaptures(Bsdl *h);

/** First INSTRUCTION_CAPTURE pattern.
 * @return The pattern; NULL without one. */
TARNLET_API const char *bsdlGetFirstInstructionCapture(Bsdl *h);

/** Next INSTRUCTION_CAPTURE pattern.
 * @return The pattern; NULL at the end. */
TARNLET_API const char *bsdlGetNextInstructionCapture(Bsdl *h);

/** Name of the data register that an instruction selects.
 * @return The name; NULL without a register, and before bsdl_check_reg_access(). */
TARNLET_API const char *bsdlGetInstrRegisterName(InstructionEntry *e);

/** Length of the data register that an instruction selects.
 * @return The length in bits; 0 without a register, -1 for a register of unknown length. */
TARNLET_API int32_t bsdlGetInstrRegisterLength(InstructionEntry *e);

/** Pattern that the register of an instruction captures, from REGISTER_ACCESS. An instruction that
 * is listed there for BYPASS without a pattern has "0" after bsdl_check_reg_access().
 * @return The pattern; NULL without a register or a pattern. */
TARNLET_API const char *bsdlGetInstrCaptureValue(InstructionEntry *e);

/** Number of IDCODE patterns.
 * @return The number; 0 without IDCODE_REGISTER. No check is needed. */
TARNLET_API int32_t bsdlGetNbrOfIdcodePatterns(Bsdl *h);

/** First IDCODE pattern, 32 characters if the description is right.
 * @return The pattern; NULL without IDCODE_REGISTER. */
TARNLET_API const char *bsdlGetFirstIdcodePattern(Bsdl *h);

/** Next IDCODE pattern.
 * @return The pattern; NULL at the end. */
TARNLET_API const char *bsdlGetNextIdcodePattern(Bsdl *h);

/** Number of USERCODE patterns.
 * @return The number; 0 without USERCODE_REGISTER. No check is needed. */
TARNLET_API int32_t bsdlGetNbrOfUsercodePatterns(Bsdl *h);

/** First USERCODE pattern, 32 characters if the description is right.
 * @return The pattern; NULL without USERCODE_REGISTER. */
TARNLET_API const char *bsdlGetFirstUsercodePattern(Bsdl *h);

/** Next USERCODE pattern.
 * @return The pattern; NULL at the end. */
TARNLET_API const char *bsdlGetNextUsercodePattern(Bsdl *h);

/** @} */

/**
 * @defgroup boundary Boundary register
 *
 * The cells stand in the order of the description, not of their numbers. A merged cell, which
 * serves two ports, is two entries with one number. No check is needed to walk the cells.
 * @{
 */

/** BOUNDARY_LENGTH.
 * @return The length in cells; 0 if none was read, and after a fast read. */
TARNLET_API int32_t bsdlGetBSRLength(Bsdl *h);

/** First cell entry.
 * @return The entry; NULL without one. */
TARNLET_API CellEntry *bsdlGetFirstCellEntry(Bsdl *h);

/** Next cell entry.
 * @return The entry; NULL at the end. */
TARNLET_API CellEntry *bsdlGetNextCellEntry(Bsdl *h);

/** Number of a cell; 0 is next to TDO.
 * @return The number; -1 for a NULL entry. */
TARNLET_API int32_t bsdlGetCellNumber(CellEntry *e);

/** Name of the cell description that a cell uses, as written. */
TARNLET_API const char *bsdlGetCellName(CellEntry *e);

/** Name of the cell in the EBST file.
 * @return The name; NULL before bsdlGenEbst(). */
TARNLET_API const char *bsdlGetCellEbstName(CellEntry *e);

/** Port bit of a cell.
 * @return The port; NULL where the table has '*'. */
TARNLET_API PortId *bsdlGetCellPort(CellEntry *e);

/** Function of a cell.
 * @return See CellFunction; 0 for a NULL entry. */
TARNLET_API int32_t bsdlGetCellFunction(CellEntry *e);

/** Safe value of a cell.
 * @return See SafeBit; 0 for a NULL entry, or if the value was refused. */
TARNLET_API int32_t bsdlGetCellSafeBit(CellEntry *e);

/** Number of the cell that disables the driver of a cell.
 * @return The number; -1 without a disable part. */
TARNLET_API int32_t bsdlGetCellControlCell(CellEntry *e);

/** Value of the control cell that disables the driver.
 * @return See DisableValue; 0 without a disable part, or if the value was refused. */
TARNLET_API int32_t bsdlGetCellDisableValue(CellEntry *e);

/** State of the pin when its driver is disabled.
 * @return See DisableResult; 0 without a disable part. */
TARNLET_API int32_t bsdlGetCellDisableResult(CellEntry *e);

/** @} */

/**
 * @defgroup extensions Extensions and design warning
 * @{
 */

/** Value of a key in the CORVANE_CLASS attribute. No check is needed.
 * @param key Compared without regard to case.
 * @return The value; NULL for an unknown or NULL key. */
TARNLET_API const char *bsdlGetCorvaneClass(Bsdl *h, const char *key);

/** Text of DESIGN_WARNING.
 * @return The text; NULL without the statement. No check is needed. */
TARNLET_API const char *bsdlDesignWarning(Bsdl *h);

/** @} */

/**
 * @defgroup ebst EBST file
 *
 * bsdl_check() comes first: cells and pins take their values from it, and a host should generate
 * nothing from a description that failed. bsdlGenEbst() prepares the data in memory,
 * bsdlCreateEbst() writes them.
 * @{
 */

/** Sets the name of the EBST file, which is copied, at any time before bsdlCreateEbst(). Without it
 * the file takes the last part of the name of the description, with ".dsh" in place of its suffix,
 * in the current directory.
 * @return 0, 2 for a NULL handle, 3 without data, 6 for a NULL name. */
TARNLET_API int32_t bsdlSetEbstFile(Bsdl *h, const char *file_name);

/** Prepares the EBST data. Records of an earlier call stay valid until freeBsdl().
 * @return 0, 2 for a NULL handle, 3 without data, 100 if memory runs out. */
TARNLET_API int32_t bsdlGenEbst(Bsdl *h);

/** Writes the EBST file. Each data register is written once for a handle: the file of a second
 * call has none.
 * @return 0, 2 for a NULL handle, 3 without data, 5 without bsdlGenEbst(), 100 if the file cannot
 *         be written. */
TARNLET_API int32_t bsdlCreateEbst(Bsdl *h);

/** Number of pins in the EBST data.
 * @return The number; -1 before bsdlGenEbst(). */
TARNLET_API int32_t bsdlGetNrOfEbstPins(Bsdl *h);

/** First pin of the EBST data.
 * @return The pin; NULL without one, and before bsdlGenEbst(). */
TARNLET_API EbstPin *bsdlGetFirstEbstPin(Bsdl *h);

/** Next pin of the EBST data.
 * @return The pin; NULL at the end. */
TARNLET_API EbstPin *bsdlGetNextEbstPin(Bsdl *h);

/** Name of the physical pin.
 * @return The name; NULL if the mapping gives none. */
TARNLET_API const char *bsdlGetEbstPinNumber(EbstPin *p);

/** Name of the port bit, with the double quotes and the subscript of the file. */
TARNLET_API const char *bsdlGetEbstPinName(EbstPin *p);

/** Type of the pin.
 * @return See EbstType; 0 for a NULL pin. */
TARNLET_API int32_t bsdlGetEbstPinType(EbstPin *p);

/** @} */

/**
 * @defgroup isc_checks Checks of IEEE 1532
 *
 * Each gives a BsdlResult: 0, 2 for a NULL handle, 3 without data, 4 without IEEE 1532
 * statements, 100 if a rule failed, and what is named with it.
 * @{
 */

/**
 * Runs the checks of bsdl_check() unless they have run, all of them even after a fast read, and if
 * they passed, bsdl_check_instr_reg() once more and those of this group except
 * bsdl_check_isc_status(). The queries on IEEE 1532 statements answer only after it has passed.
 *
 * @return 0; 2; 3; 4 in a strict reading without IEEE 1532 statements; otherwise 100 for each
 *         check that failed, added up. 0 as well if an earlier bsdl_check() failed: nothing is
 *         checked then.
 */
TARNLET_API int32_t bsdl_check_isc(Bsdl *h);

/** Instructions and registers of IEEE 1532. bsdl_check_instr_reg() and bsdl_check_reg_access()
 * come first.
 * @return Also 5 without opcodes or register access; never 4. */
TARNLET_API int32_t bsdl_check_isc_instr_reg(Bsdl *h);

/** ISC_Pin_Behavior is there.
 * @return Also 5 without it. */
TARNLET_API int32_t bsdl_check_isc_pin_behaviour(Bsdl *h);

/** ISC_Status is there.
 * @return Also 5 without it. */
TARNLET_API int32_t bsdl_check_isc_status(Bsdl *h);

/** ISC_Fixed_System_Pins.
 * @return Also 1 without the statement. Any such statement gives 100. */
TARNLET_API int32_t bsdl_check_isc_fixed_system_pins(Bsdl *h);

/** ISC_Blank_Usercode has 32 bits.
 * @return Also 5 without the statement. */
TARNLET_API int32_t bsdl_check_isc_blank_usercode(Bsdl *h);

/** ISC_Security against ISC_PROGRAM_SECURITY and ISC_PDATA.
 * @return Also 1 without the statement. */
TARNLET_API int32_t bsdl_check_isc_security(Bsdl *h);

/** Flows against instructions, registers and TCK.
 * @param prg_mode 0 for a description; 1 for a part of a PPC/PRG file, which has no instructions,
 *                 so that only the rules on variables apply.
 * @return Also 5 without flows or scan ports, and in mode 0 without TCK or opcodes. */
TARNLET_API int32_t bsdl_check_isc_flow(Bsdl *h, int32_t prg_mode);

/** Procedures: reserved names, mandatory ones, and the flows that they name.
 * @return Also 5 without the statement. */
TARNLET_API int32_t bsdl_check_isc_procedures(Bsdl *h);

/** Actions: the procedures that they name.
 * @return Also 5 without the statement. */
TARNLET_API int32_t bsdl_check_isc_actions(Bsdl *h);

/** ISC_Illegal_Exit: its instructions.
 * @return Also 1 without the statement, 5 without opcodes. */
TARNLET_API int32_t bsdl_check_isc_illegal_exit(Bsdl *h);

/** ISC_Design_Warning.
 * @return 1 without the statement, otherwise 0, 2, 3 or 4. */
TARNLET_API int32_t bsdl_check_isc_design_warning(Bsdl *h);

/** @} */

/**
 * @defgroup isc Queries on IEEE 1532 statements
 *
 * They answer for a description after bsdl_check_isc() has passed. In a PPC/PRG file they answer
 * for the program part that bsdlPrgFirstProgPart(), bsdlPrgNextProgPart() or
 * bsdlPrgSelectProgPart() has selected, and run bsdl_check_prg() first if it has not passed yet.
 * In all other cases they give 0, NULL or -1.
 *
 * What is selected at one level decides what the next one sees: an action, a procedure of it, a
 * flow of that, a block, an activity, and its fields. First, Next and Select functions select
 * what they give. Until then the first action, its first procedure, the first flow of all and its
 * first block count as selected, but no activity; later each record keeps the place in its own
 * list, so begin each level with First. Names are compared without regard to case; data names are
 * both absent or equal.
 * @{
 */

/** ISC_Conformance.
 * @return See IscConformance. */
TARNLET_API int32_t bsdlIscConformance(Bsdl *h);

/** ISC_Pin_Behavior.
 * @return See IscPinBehavior. */
TARNLET_API int32_t bsdlIscPinBehavior(Bsdl *h);

/** ISC_Status.
 * @return See IscStatus. */
TARNLET_API int32_t bsdlIscStatus(Bsdl *h);

/** ISC_Blank_Usercode.
 * @return The pattern as written, where X may be a small letter; NULL without the statement. */
TARNLET_API const char *bsdlIscBlankUserStream(Bsdl *h);

/** ISC_Security.
 * @return The record; NULL without the statement. */
TARNLET_API IscSecurity *bsdlIscSecurity(Bsdl *h);

/** ISC_Design_Warning.
 * @return The text; NULL without the statement. */
TARNLET_API const char *bsdlIscDesignWarning(Bsdl *h);

/** First port of ISC_Fixed_System_Pins. No description with this statement passes bsdl_check_isc(),
 * nor a PPC/PRG file bsdl_check_prg(), so that these two functions find no port.
 * @return The port; NULL without one. */
TARNLET_API PortId *bsdlIscFirstFixedPin(Bsdl *h);

/** Next port of ISC_Fixed_System_Pins.
 * @return The port; NULL at the end. */
TARNLET_API PortId *bsdlIscNextFixedPin(Bsdl *h);

/** Number of actions.
 * @return The number; -1 without IEEE 1532 data. */
TARNLET_API int32_t bsdlIscNbrOfActions(Bsdl *h);

/** First action.
 * @return The action; NULL without one. */
TARNLET_API IscAction *bsdlIscFirstAction(Bsdl *h);

/** Next action. At the end the last action stays selected.
 * @return The action; NULL at the end. */
TARNLET_API IscAction *bsdlIscNextAction(Bsdl *h);

/** Action of a name.
 * @param data_name NULL for an action without a data name.
 * @return The action; NULL if there is none, and the selection stays as it was. */
TARNLET_API IscAction *bsdlIscSelectAction(Bsdl *h, const char *name, const char *data_name);

/** Number of procedures that the selected action runs.
 * @return The number; -1 without an action. */
TARNLET_API int32_t bsdlIscNbrOfProcedures(Bsdl *h);

/** First procedure that the selected action runs.
 * @return The procedure; NULL without one. */
TARNLET_API IscActionSpec *bsdlIscFirstProc(Bsdl *h);

/** Next procedure that the selected action runs. At the end the last one stays selected.
 * @return The procedure; NULL at the end. */
TARNLET_API IscActionSpec *bsdlIscNextProc(Bsdl *h);

/** Procedure of a name among those that the selected action runs.
 * @param data_name NULL for a procedure without a data name.
 * @return The procedure; NULL if there is none, and the place in the action stays as it was. */
TARNLET_API IscActionSpec *bsdlIscSelectProc(Bsdl *h, const char *name, const char *data_name);

/** Procedure of a name among all procedures. It stays selected, whatever the action, until
 * bsdlIscFirstProc(), bsdlIscNextProc() or bsdlIscSelectProc() is called, or this function again,
 * also in vain.
 * @param data_name NULL for a procedure without a data name.
 * @return A record with the name of the procedure as its flow_name, owned by the caller, who
 *         releases it with bsdlIscFreeFlow(); NULL if there is none. */
TARNLET_API IscFlowInfo *bsdlIscGetProc(Bsdl *h, const char *name, const char *data_name);

/** First instruction of ISC_Illegal_Exit.
 * @return The name in upper case; NULL without one. */
TARNLET_API const char *bsdlIscFirstIllegalExit(Bsdl *h);

/** Next instruction of ISC_Illegal_Exit.
 * @return The name in upper case; NULL at the end. */
TARNLET_API const char *bsdlIscNextIllegalExit(Bsdl *h);

/** Number of flows of the selected procedure.
 * @return The number; -1 without a procedure. */
TARNLET_API int32_t bsdlIscNbrOfFlows(Bsdl *h);

/** First flow of the selected procedure.
 * @return A record owned by the caller, who releases it with bsdlIscFreeFlow(); NULL without one,
 *         or if no such flow is defined. */
TARNLET_API IscFlowInfo *bsdlIscFirstFlow(Bsdl *h);

/** Next flow of the selected procedure. At the end the last one stays selected.
 * @return A record owned by the caller, who releases it with bsdlIscFreeFlow(); NULL at the end,
 *         or if no such flow is defined. */
TARNLET_API IscFlowInfo *bsdlIscNextFlow(Bsdl *h);

/** Number of blocks of the selected flow.
 * @return The number; -1 without a flow. */
TARNLET_API int32_t bsdlIscNbrOfFlowBlocks(Bsdl *h);

/** First block of the selected flow: the initialize block if there is one, then the repeat
 * blocks, then the terminate block if there is one.
 * @return See IscBlockCode, or the count of a repeat block; 0 without a block. */
TARNLET_API int32_t bsdlIscFirstFlowBlock(Bsdl *h);

/** Next block of the selected flow.
 * @return See IscBlockCode, or the count of a repeat block; 0 at the end, and then none is
 *         selected. */
TARNLET_API int32_t bsdlIscNextFlowBlock(Bsdl *h);

/** Number of activities and loop markers of the selected block.
 * @return The number; -1 without a block. */
TARNLET_API int32_t bsdlIscNbrOfActivities(Bsdl *h);

/** First activity or loop marker of the selected block.
 * @return A record owned by the caller, who releases it with bsdlIscFreeActivity(); NULL without
 *         one, and for an activity whose wait has a syntax error, which is selected all the same:
 *         count with bsdlIscNbrOfActivities(). */
TARNLET_API IscActivityInfo *bsdlIscFirstActivity(Bsdl *h);

/** Next activity or loop marker of the selected block.
 * @return A record owned by the caller, who releases it with bsdlIscFreeActivity(); NULL at the
 *         end, when none is selected, and for an activity whose wait has a syntax error, as
 *         bsdlIscFirstActivity(). */
TARNLET_API IscActivityInfo *bsdlIscNextActivity(Bsdl *h);

/** Number of update fields of the selected activity.
 * @return The number; -1 without an activity. */
TARNLET_API int32_t bsdlIscNbrOfUpdateStreams(Bsdl *h);

/** First update field of the selected activity.
 * @return The field; NULL without one. */
TARNLET_API IscUpdateField *bsdlIscFirstUpdateStream(Bsdl *h);

/** Next update field of the selected activity.
 * @return The field; NULL at the end. */
TARNLET_API IscUpdateField *bsdlIscNextUpdateStream(Bsdl *h);

/** Number of capture fields of the selected activity.
 * @return The number; -1 without an activity. */
TARNLET_API int32_t bsdlIscNbrOfCaptureStreams(Bsdl *h);

/** First capture field of the selected activity.
 * @return The field; NULL without one. */
TARNLET_API IscCaptureField *bsdlIscFirstCaptureStream(Bsdl *h);

/** Next capture field of the selected activity.
 * @return The field; NULL at the end. */
TARNLET_API IscCaptureField *bsdlIscNextCaptureStream(Bsdl *h);

/** Releases a record of bsdlIscFirstActivity() or bsdlIscNextActivity(). NULL is ignored. */
TARNLET_API void bsdlIscFreeActivity(IscActivityInfo *info);

/** Releases a record of bsdlIscFirstFlow(), bsdlIscNextFlow() or bsdlIscGetProc(). NULL is
 * ignored. */
TARNLET_API void bsdlIscFreeFlow(IscFlowInfo *info);

/** @} */

/**
 * @defgroup aio_checks Checks of IEEE 1149.6
 *
 * Each gives a BsdlResult: 0, 2 for a NULL handle, 3 without data, 7 without IEEE 1149.6
 * statements, 100 if a rule failed, and what is named with it.
 * @{
 */

/**
 * Runs the checks of bsdl_check() unless they have run, all of them even after a fast read, and if
 * they passed, those of this group.
 *
 * @return 0; 2; 3; 7 in a strict reading without IEEE 1149.6 statements; 100 if a check of this
 *         group failed, or 100 for each general check that failed, added up. 0 as well if an
 *         earlier bsdl_check() failed: nothing is checked then.
 */
TARNLET_API int32_t bsdl_check_aio(Bsdl *h);

/** AIO_Component_Conformance. A description without IEEE 1149.6 statements is refused in a strict
 * reading only; if it uses the package, the other checks and the queries take the statements as
 * present and empty from then on.
 * @return Also 7 in a strict reading only, and without statements 5 if the package is in use. */
TARNLET_API int32_t bsdl_check_aio_conformance(Bsdl *h);

/** AIO_EXTEST_Pulse_Execution.
 * @return Also 5 without the statement. */
TARNLET_API int32_t bsdl_check_aio_extest_pulse(Bsdl *h);

/** AIO_EXTEST_Train_Execution.
 * @return Also 5 without the statement. */
TARNLET_API int32_t bsdl_check_aio_extest_train(Bsdl *h);

/** AIO_Pin_Behavior against ports, cells and groups. It also tells the queries which ports are
 * vectors.
 * @return Also 5 without the statement, ports or opcodes. */
TARNLET_API int32_t bsdl_check_aio_pin_behavior(Bsdl *h);

/** @} */

/**
 * @defgroup aio Queries on IEEE 1149.6 statements
 *
 * They answer if bsdlIsAio() does and the description has such statements. Vectors are known as
 * such after bsdl_check_aio() only. The records belong to the handle, one for each kind, and the
 * next query overwrites them.
 * @{
 */

/** AIO_Component_Conformance.
 * @return See AioConformance. */
TARNLET_API int32_t bsdlAioConformance(Bsdl *h);

/** AIO_EXTEST_Pulse_Execution.
 * @return The values; NULL without the statement. */
TARNLET_API AioPulseResult *bsdlAioExtestPulse(Bsdl *h);

/** AIO_EXTEST_Train_Execution.
 * @return The values; NULL without the statement. */
TARNLET_API AioTrainResult *bsdlAioExtestTrain(Bsdl *h);

/** Number of descriptions in AIO_Pin_Behavior; one may be for several ports.
 * @return The number; -1 without IEEE 1149.6 statements. */
TARNLET_API int32_t bsdlAioNbrOfPinBehaviorDescriptions(Bsdl *h);

/** First port of the first description; for a vector its first bit.
 * @return The values; NULL without one. */
TARNLET_API AioPinResult *bsdlAioFirstPinBehavior(Bsdl *h);

/** First port of the next description.
 * @return The values; NULL at the end, and before bsdlAioFirstPinBehavior(). */
TARNLET_API AioPinResult *bsdlAioNextPinBehavior(Bsdl *h);

/** Next port of the current description.
 * @return The values; NULL at the end, and before bsdlAioFirstPinBehavior(). */
TARNLET_API AioPinResult *bsdlAioNextACPort(Bsdl *h);

/** Next bit of the current vector, with its input cell if it has one.
 * @return The values; NULL at the end, for a port that is no vector or has a subscript, and
 *         before bsdlAioFirstPinBehavior(). */
TARNLET_API AioPinResult *bsdlAioNextInputCell(Bsdl *h);

/**
 * Behaviour of one port bit. The search uses up the input cells of the ports that it passes: ask
 * for bits in the order of the description, and do not mix it with a walk over the input cells.
 *
 * @param port The port; its subscript may name a bit of a vector. Not kept.
 * @return The values; NULL if the port is not described, and for a NULL port or name.
 */
TARNLET_API AioPinResult *bsdlAioThisPinBehavior(Bsdl *h, const PortId *port);

/** @} */

/**
 * @defgroup d4 IEEE 1149.4 devices
 *
 * There is no statement for IEEE 1149.4: the analog test data of known devices come from a table,
 * by the name of the component. The component is searched once for a thread, by the first call
 * of this group, even with a NULL handle, which finds nothing: every later call answers for that
 * first component, whatever its handle. The iterations belong to the thread as well. The records
 * are constant and outlive all handles. No check is needed.
 * @{
 */

/** Whether the component is in the table.
 * @return 1 or 0. */
TARNLET_API int32_t bsdlDot4(Bsdl *h);

/** Analog test bus.
 * @return The record; NULL for an unknown component. */
TARNLET_API const D4AtBus *btslD4AtBus(Bsdl *h);

/** Number of analog boundary modules.
 * @return The number; -1 for an unknown component. */
TARNLET_API int32_t btslD4NbrABMs(Bsdl *h);

/** First analog boundary module.
 * @return The record; NULL for an unknown component. */
TARNLET_API const D4Abm *btslD4FirstABM(Bsdl *h);

/** Next analog boundary module.
 * @return The record; NULL at the end. */
TARNLET_API const D4Abm *btslD4NextABM(Bsdl *h);

/** Number of partitions of the test bus interface circuit.
 * @return The number; -1 for an unknown component. */
TARNLET_API int32_t btslD4TbicNbrPartitions(Bsdl *h);

/** First partition of the test bus interface circuit.
 * @return The record; NULL for an unknown component. */
TARNLET_API const D4Partition *btslD4TbicFirstPartitions(Bsdl *h);

/** Next partition of the test bus interface circuit.
 * @return The record; NULL at the end. */
TARNLET_API const D4Partition *btslD4TbicNextPartitions(Bsdl *h);

/** @} */

/**
 * @defgroup prg PPC/PRG files
 *
 * A PPC/PRG file names a design, what its scan chains hold and the programs of its parts. The
 * channel that is selected decides which component settings are seen, and the program part that
 * is selected decides what the queries on IEEE 1532 statements see. Until another is selected the
 * first channel, its first setting and the first program part count as selected, but not for those
 * queries. All of it can be asked without a check, except those queries.
 * @{
 */

/** The check of a PPC/PRG file: references, extensions, and the IEEE 1532 statements of each part
 * type. It is the only one to call for such a file, once, and before the queries on IEEE 1532
 * statements: bsdl_check(), an earlier call or such a query would give up the declarations of
 * extensions that this check needs.
 * @return 0, 2 for a NULL handle, 100 if a rule failed; 0 also after freeBsdl(). */
TARNLET_API int32_t bsdl_check_prg(Bsdl *h);

/** The part type of each program is described in the file.
 * @return 0 or 100; 0 also for a NULL handle and without programs. */
TARNLET_API int32_t bsdl_check_prg_prog_ref(Bsdl *h);

/** Name of the design.
 * @return The name; NULL for a description. */
TARNLET_API const char *bsdlPrgDesignName(Bsdl *h);

/** Revision of the design.
 * @return The revision; NULL for a description, or after a syntax error in it. */
TARNLET_API const char *bsdlPrgRevision(Bsdl *h);

/** FREQUENCY.
 * @return The number as written, which has no unit; 0 for a description. */
TARNLET_API int32_t bsdlPrgFrequency(Bsdl *h);

/** Number of serial channels (taps).
 * @return The number; -1 without SERIAL_CHANNELS. */
TARNLET_API int32_t bsdlPrgNbrOfTaps(Bsdl *h);

/** Selects the first serial channel.
 * @return Its tap number; -1 without one. */
TARNLET_API int32_t bsdlPrgFirstTap(Bsdl *h);

/** Selects the next serial channel.
 * @return Its tap number; -1 at the end, and then none is selected. */
TARNLET_API int32_t bsdlPrgNextTap(Bsdl *h);

/** Selects the serial channel of a tap number.
 * @return Its index in the list, not its tap number; -1 if there is none, and the selection stays
 *         as it was. */
TARNLET_API int32_t bsdlPrgSelectTap(Bsdl *h, int32_t tap);

/** The serial channel that is selected.
 * @return Its tap number; -1 without one. */
TARNLET_API int32_t bsdlPrgCurrTap(Bsdl *h);

/** Number of component settings of the selected channel.
 * @return The number; -1 without a channel or a setting. */
TARNLET_API int32_t bsdlPrgNbrOfComponents(Bsdl *h);

/** Selects the first component setting of the channel.
 * @return The setting; NULL without one. */
TARNLET_API PrgComponentSetting *bsdlPrgFirstComponent(Bsdl *h);

/** Selects the next component setting of the channel.
 * @return The setting; NULL at the end, and then none is selected. */
TARNLET_API PrgComponentSetting *bsdlPrgNextComponent(Bsdl *h);

/** Selects the component setting of a part in the channel.
 * @param part_name Compared without regard to case.
 * @return The setting; NULL if there is none, and the selection stays as it was. */
TARNLET_API PrgComponentSetting *bsdlPrgSelectComponent(Bsdl *h, const char *part_name);

/** Part name of the selected component setting.
 * @return The name; NULL without a setting. */
TARNLET_API const char *bsdlPrgComponentName(Bsdl *h);

/** Instruction of the selected component setting.
 * @return The name in upper case; NULL without a setting. */
TARNLET_API const char *bsdlPrgComponentInstr(Bsdl *h);

/** Number of program parts.
 * @return The number; -1 without one. */
TARNLET_API int32_t bsdlPrgNbrOfProgParts(Bsdl *h);

/** Selects the first program part.
 * @return The part; NULL without one. */
TARNLET_API PrgProgramSpec *bsdlPrgFirstProgPart(Bsdl *h);

/** Selects the next program part.
 * @return The part; NULL at the end, and then none is selected. */
TARNLET_API PrgProgramSpec *bsdlPrgNextProgPart(Bsdl *h);

/** Selects the program part of a name.
 * @param part_name Compared without regard to case.
 * @return The part; NULL if there is none, and the selection stays as it was. */
TARNLET_API PrgProgramSpec *bsdlPrgSelectProgPart(Bsdl *h, const char *part_name);

/** The program part that is selected.
 * @return The part; NULL without one. */
TARNLET_API PrgProgramSpec *bsdlPrgCurrProgPart(Bsdl *h);

/** Type of the selected program part.
 * @return See PrgProgramType; -1 without a part. */
TARNLET_API int32_t bsdlPrgProgProgType(Bsdl *h);

/** Name of the selected program part.
 * @return The name; NULL without a part. */
TARNLET_API const char *bsdlPrgProgPartName(Bsdl *h);

/** Part type of the selected program part.
 * @return The type; NULL without a part. */
TARNLET_API const char *bsdlPrgProgPartType(Bsdl *h);

/** Input file of the selected program part.
 * @return The name; NULL without a part or a file. */
TARNLET_API const char *bsdlPrgProgInFile(Bsdl *h);

/** Output file of the selected program part.
 * @return The name; NULL without a part or a file. */
TARNLET_API const char *bsdlPrgProgOutFile(Bsdl *h);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
