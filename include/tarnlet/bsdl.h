#ifndef TARNLET_BSDL_H
#define TARNLET_BSDL_H

#include <stdint.h>

#include <glib.h>

#if defined(__GNUC__) || defined(__clang__)
#define TARNLET_API __attribute__((visibility("default")))
#define TARNLET_PRINTF(format_at, first_at) __attribute__((format(printf, format_at, first_at)))
#define TARNLET_SENTINEL __attribute__((sentinel))
#else
#define TARNLET_API
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
  BSDL_FLAG_BIT0 = 1u << 0,            /**< Accepted, no effect. */
  BSDL_FLAG_BIT2 = 1u << 2,            /**< Accepted, no effect. */
  BSDL_FLAG_STRICT = 1u << 3,          /**< Turns a number of warnings into errors. */
  BSDL_FLAG_BITS4_6 = 0x70,            /**< Accepted, no effect. */
  BSDL_FLAG_NO_PACKAGE_DIRS = 1u << 14, /**< The list of directories is not looked at. */
  BSDL_FLAG_FAST_READ = 1u << 15       /**< Stop after the identification registers. */
};

/** Level of a message: what kind of text it is. Messages are not filtered by level. */
enum BsdlLevel {
  BSDL_LEVEL_ERROR = 0,
  BSDL_LEVEL_WARNING = 1,
  BSDL_LEVEL_INFO = 2,    /**< A statement or a check passed, or a statement is absent. */
  BSDL_LEVEL_PHASE = 3,   /**< Heading of a phase. */
  BSDL_LEVEL_PROGRESS = 4 /**< Which file, package or part is at hand. */
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
  BSDL_RESULT_FAILED = 100   /**< At least one rule failed; the messages say which. */
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

/** Mode of a port. Codes 6 to 9 stand for the modes 1 to 4 of a port bit that has no boundary
 * cell; bsdl_check_bsr() sets them. */
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
enum HaltState {
  HALT_STATE_LOW = 0,
  HALT_STATE_BOTH = 1
};

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

/** Kind of a data register. */
enum RegisterKind {
  REGISTER_KIND_BOUNDARY = 1,
  REGISTER_KIND_BYPASS = 2,
  REGISTER_KIND_IDENTIFICATION = 4, /**< IDCODE and USERCODE, implied by the standard. */
  REGISTER_KIND_DEVICE_ID = 5,      /**< DEVICE_ID as written, or added for IEEE 1532. */
  REGISTER_KIND_BIST = 6,           /**< Register of RUNBIST. */
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
enum IscStatus {
  ISC_STATUS_NONE = 0,
  ISC_STATUS_IMPLEMENTED = 1,
  ISC_STATUS_NOT_IMPLEMENTED = 2
};

/** Marker in the bit positions of an IscSecurity: a '*' was written. */
enum IscSecurityBit {
  ISC_SECURITY_ANY = -2
};

/** Exclusivity of an IscAction. */
enum IscExclusivity {
  ISC_EXCLUSIVITY_NONE = 0,
  ISC_EXCLUSIVITY_PROPRIETARY = 1
};

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
enum IscTag {
  ISC_TAG_NONE = 0,
  ISC_TAG_CRC = 1,
  ISC_TAG_OST = 2,
  ISC_TAG_CRC_OST = 3
};

/** Kind of an activity: a loop is two markers with its activities between them. */
enum IscActivityKind {
  ISC_ACTIVITY_PLAIN = 0,
  ISC_ACTIVITY_LOOP_START = 1,
  ISC_ACTIVITY_LOOP_END = 2
};

/** Special results of bsdlIscFirstFlowBlock() and bsdlIscNextFlowBlock(); a positive result is
 * the count of a repeat block. */
enum IscBlockCode {
  ISC_BLOCK_TERMINATE = -2,
  ISC_BLOCK_INITIALIZE = -1,
  ISC_BLOCK_NONE = 0
};

/** Bits of IscFlowInfo.flags. */
enum IscFlowFlag {
  ISC_FLOW_UNPROCESSED = 0x20,
  ISC_FLOW_EXIT_ON_ERROR = 0x40
};

/** Result of bsdlAioConformance(). */
enum AioConformance {
  AIO_CONFORMANCE_NONE = 0,
  AIO_CONFORMANCE_1149_6_2003 = 1
};

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
  /** Called for each message on the thread of the export at hand; NULL drops all messages. */
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

/** Bits of ISC_Security; a position, or ISC_SECURITY_ANY. */
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
 * For an activity, v holds the shortest wait as clock cycles and microseconds, then the longest
 * wait in the same way; a value that is not given is 0. For a loop marker instruction_name is
 * NULL and v holds the kind (see IscActivityKind), the largest and the smallest number of loops,
 * and 0. */
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

/** Analog test bus of an IEEE 1149.4 device. */
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

/* reader */
TARNLET_API Bsdl *readBsdl(const char *file_name, const char *package, GSList *package_dirs, uint32_t flags, BsdlContext *context);
TARNLET_API int32_t freeBsdl(Bsdl *h);
TARNLET_API void bsdlRelease(Bsdl *h);
TARNLET_API void bsdl_msg(int32_t level, uint32_t verbosity, const char *format, ...) TARNLET_PRINTF(3, 4);
TARNLET_API int32_t bsdlMessageLine(void);
TARNLET_API const char *bsdlMessageFile(void);
TARNLET_API const char *bsdlMessageRule(void);
TARNLET_API int32_t bsdlGetNumErrors(Bsdl *h);
TARNLET_API int32_t bsdl_check(Bsdl *h);
TARNLET_API GSList *bsdlUsrPackDirs(const char *first, ...) TARNLET_SENTINEL;
TARNLET_API void bsdlFreeUsrPackDirs(GSList *dirs);
TARNLET_API const char *bsdlGetFirstDotALLFileSpec(Bsdl *h);
TARNLET_API const char *bsdlGetNextDotALLFileSpec(Bsdl *h);
TARNLET_API const char *bsdlGetFirstDotALLSpec(Bsdl *h);
TARNLET_API const char *bsdlGetNextDotALLSpec(Bsdl *h);
TARNLET_API void bsdlLibVersion(const char* *name, const char* *version);
TARNLET_API int32_t bsdlStandard(Bsdl *h);
TARNLET_API const char *bsdlStandard1149_1(Bsdl *h);
TARNLET_API const char *bsdlStandard1532(Bsdl *h);
TARNLET_API const char *bsdlStandard1149_4(Bsdl *h);
TARNLET_API const char *bsdlStandard1149_6(Bsdl *h);
TARNLET_API const char *bsdlStandardPrg(Bsdl *h);
TARNLET_API uint32_t bsdlIs1990(Bsdl *h);
TARNLET_API uint32_t bsdlIs1994(Bsdl *h);
TARNLET_API uint32_t bsdlIs2001(Bsdl *h);
TARNLET_API uint32_t bsdlIs1532(Bsdl *h);
TARNLET_API uint32_t bsdlIsPrg(Bsdl *h);
TARNLET_API uint32_t bsdlIsAio(Bsdl *h);
TARNLET_API int32_t bsdlConformance(Bsdl *h);
TARNLET_API const char *bsdlFileName(Bsdl *h);
TARNLET_API const char *bsdlComponentName(Bsdl *h);
TARNLET_API const char *bsdlGetDefaultDevicePackage(Bsdl *h);
TARNLET_API int32_t bsdlInitComponentList(void);
TARNLET_API void bsdlFreeComponentList(GList *list);
TARNLET_API int32_t bsdlGetNbrOfComponents(GList *list);
TARNLET_API void *bsdlGetFirstComponent(GList *list);
TARNLET_API void *bsdlGetNextComponent(GList *cell);
TARNLET_API GList *bsdlAddComponent(GList *list, void *component);
TARNLET_API GList *bsdlFindComponent(GList *list, const void *component);
TARNLET_API GSList *bsdlGetFirstCellDesc(Bsdl *h);
TARNLET_API GSList *bsdlGetNextCellDesc(Bsdl *h);
TARNLET_API const char *bsdlGetCellDescName(GSList *cell);
TARNLET_API const char *bsdlGetCellDescPackage(GSList *cell);
TARNLET_API GSList *bsdlGetCellFirstCaptDesc(GSList *cell);
TARNLET_API GSList *bsdlGetCellNextCaptDesc(GSList *cell);
TARNLET_API int32_t bsdlGetCellCaptContext(GSList *capt);
TARNLET_API int32_t bsdlGetCellCaptInstr(GSList *capt);
TARNLET_API int32_t bsdlGetCellCaptSource(GSList *capt);
TARNLET_API int32_t bsdlGetNbrOfPins(Bsdl *h);
TARNLET_API PinEntry *bsdlGetFirstPin(Bsdl *h);
TARNLET_API PinEntry *bsdlGetNextPin(Bsdl *h);
TARNLET_API PortId *bsdlGetPinPortID(PinEntry *pin);
TARNLET_API int32_t bsdlGetPinType(PinEntry *pin);
TARNLET_API int32_t bsdlGetPinFunction(PinEntry *pin);
TARNLET_API const char *bsdlGetPinPhysicalName(PinEntry *pin);
TARNLET_API PortId *bsdlGetTckPortId(Bsdl *h);
TARNLET_API PortId *bsdlGetTdiPortId(Bsdl *h);
TARNLET_API PortId *bsdlGetTmsPortId(Bsdl *h);
TARNLET_API PortId *bsdlGetTdoPortId(Bsdl *h);
TARNLET_API PortId *bsdlGetTrstPortId(Bsdl *h);
TARNLET_API double bsdlGetTckFrequency(Bsdl *h);
TARNLET_API int32_t bsdlGetTckHaltState(Bsdl *h);
TARNLET_API int32_t bsdl_check_logical_port(Bsdl *h);
TARNLET_API int32_t bsdlGetNbrOfPinMaps(Bsdl *h);
TARNLET_API const char *bsdlGetFirstPinMap(Bsdl *h);
TARNLET_API const char *bsdlGetNextPinMap(Bsdl *h);
TARNLET_API int32_t bsdl_check_generic(Bsdl *h);
TARNLET_API int32_t bsdl_check_pin_map(Bsdl *h, const char *name);
TARNLET_API int32_t bsdl_check_all_pin_maps(Bsdl *h);
TARNLET_API int32_t bsdl_check_packages(Bsdl *h);
TARNLET_API int32_t bsdlGetNbrOfPortGroups(Bsdl *h);
TARNLET_API PortGroup *bsdlGetFirstPortGroup(Bsdl *h);
TARNLET_API PortGroup *bsdlGetNextPortGroup(Bsdl *h);
TARNLET_API int32_t bsdl_check_grouped_port(Bsdl *h);
TARNLET_API int32_t bsdl_check_scan_port(Bsdl *h);
TARNLET_API int32_t bsdlGetNbrOfComplPorts(Bsdl *h);
TARNLET_API PortId *bsdlGetFirstComplPort(Bsdl *h);
TARNLET_API PortId *bsdlGetNextComplPort(Bsdl *h);
TARNLET_API int32_t bsdlGetNbrOfComplPatterns(Bsdl *h);
TARNLET_API const char *bsdlGetFirstComplPattern(Bsdl *h);
TARNLET_API const char *bsdlGetNextComplPattern(Bsdl *h);
TARNLET_API int32_t bsdl_check_compliance(Bsdl *h);
TARNLET_API int32_t bsdlGetInstructionLength(Bsdl *h);
TARNLET_API int32_t bsdlGetNbrOfInstructions(Bsdl *h);
TARNLET_API InstructionEntry *bsdlGetFirstInstruction(Bsdl *h);
TARNLET_API InstructionEntry *bsdlGetNextInstruction(Bsdl *h);
TARNLET_API const char *bsdlGetInstructionName(InstructionEntry *e);
TARNLET_API int32_t bsdlGetInstructionType(InstructionEntry *e);
TARNLET_API int32_t bsdlIsInstrPreload(InstructionEntry *e);
TARNLET_API int32_t bsdlGetNbrOfInstrPatterns(InstructionEntry *e);
TARNLET_API const char *bsdlGetFirstInstrPattern(InstructionEntry *e);
TARNLET_API const char *bsdlGetNextInstrPattern(InstructionEntry *e);
TARNLET_API int32_t bsdlGetNbrOfInstructionCaptures(Bsdl *h);
TARNLET_API const char *bsdlGetFirstInstructionCapture(Bsdl *h);
TARNLET_API const char *bsdlGetNextInstructionCapture(Bsdl *h);
TARNLET_API const char *bsdlGetInstrRegisterName(InstructionEntry *e);
TARNLET_API int32_t bsdlGetInstrRegisterLength(InstructionEntry *e);
TARNLET_API const char *bsdlGetInstrCaptureValue(InstructionEntry *e);
TARNLET_API int32_t bsdlGetNbrOfIdcodePatterns(Bsdl *h);
TARNLET_API const char *bsdlGetFirstIdcodePattern(Bsdl *h);
TARNLET_API const char *bsdlGetNextIdcodePattern(Bsdl *h);
TARNLET_API int32_t bsdlGetNbrOfUsercodePatterns(Bsdl *h);
TARNLET_API const char *bsdlGetFirstUsercodePattern(Bsdl *h);
TARNLET_API const char *bsdlGetNextUsercodePattern(Bsdl *h);
TARNLET_API int32_t bsdl_check_instr_reg(Bsdl *h);
TARNLET_API int32_t bsdl_check_optional_reg(Bsdl *h);
TARNLET_API int32_t bsdl_check_reg_access(Bsdl *h);
TARNLET_API int32_t bsdlGetBSRLength(Bsdl *h);
TARNLET_API CellEntry *bsdlGetFirstCellEntry(Bsdl *h);
TARNLET_API CellEntry *bsdlGetNextCellEntry(Bsdl *h);
TARNLET_API int32_t bsdlGetCellNumber(CellEntry *e);
TARNLET_API const char *bsdlGetCellName(CellEntry *e);
TARNLET_API const char *bsdlGetCellEbstName(CellEntry *e);
TARNLET_API PortId *bsdlGetCellPort(CellEntry *e);
TARNLET_API int32_t bsdlGetCellFunction(CellEntry *e);
TARNLET_API int32_t bsdlGetCellSafeBit(CellEntry *e);
TARNLET_API int32_t bsdlGetCellControlCell(CellEntry *e);
TARNLET_API int32_t bsdlGetCellDisableValue(CellEntry *e);
TARNLET_API int32_t bsdlGetCellDisableResult(CellEntry *e);
TARNLET_API int32_t bsdl_check_bsr(Bsdl *h);
TARNLET_API int32_t bsdl_check_runbist(Bsdl *h);
TARNLET_API int32_t bsdl_check_intest(Bsdl *h);
TARNLET_API const char *bsdlGetCorvaneClass(Bsdl *h, const char *key);
TARNLET_API const char *bsdlDesignWarning(Bsdl *h);
TARNLET_API int32_t bsdl_check_extensions(Bsdl *h);
/* EBST */
TARNLET_API int32_t bsdlSetEbstFile(Bsdl *h, const char *file_name);
TARNLET_API int32_t bsdlGenEbst(Bsdl *h);
TARNLET_API int32_t bsdlCreateEbst(Bsdl *h);
TARNLET_API int32_t bsdlGetNrOfEbstPins(Bsdl *h);
TARNLET_API EbstPin *bsdlGetFirstEbstPin(Bsdl *h);
TARNLET_API EbstPin *bsdlGetNextEbstPin(Bsdl *h);
TARNLET_API const char *bsdlGetEbstPinNumber(EbstPin *p);
TARNLET_API const char *bsdlGetEbstPinName(EbstPin *p);
TARNLET_API int32_t bsdlGetEbstPinType(EbstPin *p);
/* IEEE 1532 */
TARNLET_API int32_t bsdl_check_isc(Bsdl *h);
TARNLET_API int32_t bsdl_check_isc_pin_behaviour(Bsdl *h);
TARNLET_API int32_t bsdl_check_isc_status(Bsdl *h);
TARNLET_API int32_t bsdl_check_isc_blank_usercode(Bsdl *h);
TARNLET_API int32_t bsdl_check_isc_design_warning(Bsdl *h);
TARNLET_API int32_t bsdl_check_isc_fixed_system_pins(Bsdl *h);
TARNLET_API int32_t bsdl_check_isc_security(Bsdl *h);
TARNLET_API int32_t bsdl_check_isc_procedures(Bsdl *h);
TARNLET_API int32_t bsdl_check_isc_actions(Bsdl *h);
TARNLET_API int32_t bsdl_check_isc_illegal_exit(Bsdl *h);
TARNLET_API int32_t bsdl_check_isc_instr_reg(Bsdl *h);
TARNLET_API int32_t bsdl_check_isc_flow(Bsdl *h, int32_t prg_mode);
TARNLET_API int32_t bsdlIscConformance(Bsdl *h);
TARNLET_API int32_t bsdlIscPinBehavior(Bsdl *h);
TARNLET_API int32_t bsdlIscStatus(Bsdl *h);
TARNLET_API const char *bsdlIscBlankUserStream(Bsdl *h);
TARNLET_API IscSecurity *bsdlIscSecurity(Bsdl *h);
TARNLET_API const char *bsdlIscDesignWarning(Bsdl *h);
TARNLET_API PortId *bsdlIscFirstFixedPin(Bsdl *h);
TARNLET_API PortId *bsdlIscNextFixedPin(Bsdl *h);
TARNLET_API int32_t bsdlIscNbrOfActions(Bsdl *h);
TARNLET_API IscAction *bsdlIscFirstAction(Bsdl *h);
TARNLET_API IscAction *bsdlIscNextAction(Bsdl *h);
TARNLET_API IscAction *bsdlIscSelectAction(Bsdl *h, const char *name, const char *data_name);
TARNLET_API int32_t bsdlIscNbrOfProcedures(Bsdl *h);
TARNLET_API IscActionSpec *bsdlIscFirstProc(Bsdl *h);
TARNLET_API IscActionSpec *bsdlIscNextProc(Bsdl *h);
TARNLET_API IscActionSpec *bsdlIscSelectProc(Bsdl *h, const char *name, const char *data_name);
TARNLET_API IscFlowInfo *bsdlIscGetProc(Bsdl *h, const char *name, const char *data_name);
TARNLET_API const char *bsdlIscFirstIllegalExit(Bsdl *h);
TARNLET_API const char *bsdlIscNextIllegalExit(Bsdl *h);
TARNLET_API int32_t bsdlIscNbrOfFlows(Bsdl *h);
TARNLET_API IscFlowInfo *bsdlIscFirstFlow(Bsdl *h);
TARNLET_API IscFlowInfo *bsdlIscNextFlow(Bsdl *h);
TARNLET_API int32_t bsdlIscNbrOfFlowBlocks(Bsdl *h);
TARNLET_API int32_t bsdlIscFirstFlowBlock(Bsdl *h);
TARNLET_API int32_t bsdlIscNextFlowBlock(Bsdl *h);
TARNLET_API int32_t bsdlIscNbrOfActivities(Bsdl *h);
TARNLET_API IscActivityInfo *bsdlIscFirstActivity(Bsdl *h);
TARNLET_API IscActivityInfo *bsdlIscNextActivity(Bsdl *h);
TARNLET_API int32_t bsdlIscNbrOfUpdateStreams(Bsdl *h);
TARNLET_API IscUpdateField *bsdlIscFirstUpdateStream(Bsdl *h);
TARNLET_API IscUpdateField *bsdlIscNextUpdateStream(Bsdl *h);
TARNLET_API int32_t bsdlIscNbrOfCaptureStreams(Bsdl *h);
TARNLET_API IscCaptureField *bsdlIscFirstCaptureStream(Bsdl *h);
TARNLET_API IscCaptureField *bsdlIscNextCaptureStream(Bsdl *h);
TARNLET_API void bsdlIscFreeActivity(IscActivityInfo *info);
TARNLET_API void bsdlIscFreeFlow(IscFlowInfo *info);
/* IEEE 1149.6 and 1149.4 */
TARNLET_API int32_t bsdlAioConformance(Bsdl *h);
TARNLET_API AioPulseResult *bsdlAioExtestPulse(Bsdl *h);
TARNLET_API AioTrainResult *bsdlAioExtestTrain(Bsdl *h);
TARNLET_API int32_t bsdlAioNbrOfPinBehaviorDescriptions(Bsdl *h);
TARNLET_API AioPinResult *bsdlAioFirstPinBehavior(Bsdl *h);
TARNLET_API AioPinResult *bsdlAioNextPinBehavior(Bsdl *h);
TARNLET_API AioPinResult *bsdlAioNextACPort(Bsdl *h);
TARNLET_API AioPinResult *bsdlAioNextInputCell(Bsdl *h);
TARNLET_API AioPinResult *bsdlAioThisPinBehavior(Bsdl *h, const PortId *port);
TARNLET_API int32_t bsdl_check_aio(Bsdl *h);
TARNLET_API int32_t bsdl_check_aio_conformance(Bsdl *h);
TARNLET_API int32_t bsdl_check_aio_extest_pulse(Bsdl *h);
TARNLET_API int32_t bsdl_check_aio_extest_train(Bsdl *h);
TARNLET_API int32_t bsdl_check_aio_pin_behavior(Bsdl *h);
TARNLET_API int32_t bsdlDot4(Bsdl *h);
TARNLET_API const D4AtBus *btslD4AtBus(Bsdl *h);
TARNLET_API int32_t btslD4NbrABMs(Bsdl *h);
TARNLET_API const D4Abm *btslD4FirstABM(Bsdl *h);
TARNLET_API const D4Abm *btslD4NextABM(Bsdl *h);
TARNLET_API int32_t btslD4TbicNbrPartitions(Bsdl *h);
TARNLET_API const D4Partition *btslD4TbicFirstPartitions(Bsdl *h);
TARNLET_API const D4Partition *btslD4TbicNextPartitions(Bsdl *h);
/* PPC/PRG */
TARNLET_API int32_t bsdl_check_prg(Bsdl *h);
TARNLET_API int32_t bsdl_check_prg_prog_ref(Bsdl *h);
TARNLET_API const char *bsdlPrgDesignName(Bsdl *h);
TARNLET_API const char *bsdlPrgRevision(Bsdl *h);
TARNLET_API int32_t bsdlPrgFrequency(Bsdl *h);
TARNLET_API int32_t bsdlPrgNbrOfTaps(Bsdl *h);
TARNLET_API int32_t bsdlPrgFirstTap(Bsdl *h);
TARNLET_API int32_t bsdlPrgNextTap(Bsdl *h);
TARNLET_API int32_t bsdlPrgSelectTap(Bsdl *h, int32_t tap);
TARNLET_API int32_t bsdlPrgCurrTap(Bsdl *h);
TARNLET_API int32_t bsdlPrgNbrOfComponents(Bsdl *h);
TARNLET_API PrgComponentSetting *bsdlPrgFirstComponent(Bsdl *h);
TARNLET_API PrgComponentSetting *bsdlPrgNextComponent(Bsdl *h);
TARNLET_API PrgComponentSetting *bsdlPrgSelectComponent(Bsdl *h, const char *part_name);
TARNLET_API const char *bsdlPrgComponentName(Bsdl *h);
TARNLET_API const char *bsdlPrgComponentInstr(Bsdl *h);
TARNLET_API int32_t bsdlPrgNbrOfProgParts(Bsdl *h);
TARNLET_API PrgProgramSpec *bsdlPrgFirstProgPart(Bsdl *h);
TARNLET_API PrgProgramSpec *bsdlPrgNextProgPart(Bsdl *h);
TARNLET_API PrgProgramSpec *bsdlPrgSelectProgPart(Bsdl *h, const char *part_name);
TARNLET_API PrgProgramSpec *bsdlPrgCurrProgPart(Bsdl *h);
TARNLET_API int32_t bsdlPrgProgProgType(Bsdl *h);
TARNLET_API const char *bsdlPrgProgPartName(Bsdl *h);
TARNLET_API const char *bsdlPrgProgPartType(Bsdl *h);
TARNLET_API const char *bsdlPrgProgInFile(Bsdl *h);
TARNLET_API const char *bsdlPrgProgOutFile(Bsdl *h);

#ifdef __cplusplus
}
#endif

#endif
