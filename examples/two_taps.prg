-- two_taps: a PPC/PRG data file for an invented board with two scan chains and
-- two types of parts that are programmed by IEEE 1532. It is clean.

PRG_DATA entity two_taps is

    use STD_PRG_2001.all;
    use STD_1532_2002.all;

    attribute PRG_DESIGN_REVISION of two_taps : entity is REV_B;

    -- Of the test clock, in hertz.
    attribute PRG_FREQUENCY of two_taps : entity is "10000000";

    -- What each chain holds: part, instruction and the value of its register.
    -- A blank belongs before the comma, which may be part of a name.
    attribute PRG_SERIAL_CHANNELS of two_taps : entity is
        "TAP1 U1 BYPASS (0) " &
        "     U2 BYPASS (0) " &
        "     U3 IDCODE (0001 0110 1001 XXXX 0010 1111 0100 1011) , " &
        "TAP2 U7/A BYPASS (0) " &
        "     U8   SAMPLE (XXXX XXXX)";

    -- The programs of the parts: the part, its type, and the files that the
    -- program reads and, behind the colons, writes.
    attribute PRG_PROGRAM_REFERENCE of two_taps : entity is
        "PROGRAM_ISC      U1   TARN_CPLD  u1.isc           " &
        "PROGRAM_ISC2002  U2   TARN_FLASH u2.dat :: u2.log " &
        "PROGRAM_SVF      U3   TARN_CPLD  ../svf/u3.svf    " &
        "PROGRAM_STAPL    U7/A TARN_CPLD  u7.stp           " &
        "PROGRAM_JAM      U8   TARN_FLASH :: u8.out        " &
        "PROGRAM_JCS12    U9   TARN_FLASH                  ";

    -- The families of IEEE 1532 statements, one for each type of part.

    attribute ISC_CONFORMANCE of TARN_CPLD : entity is "STD_1532_2002";
    attribute ISC_PIN_BEHAVIOR of TARN_CPLD : entity is "HIGHZ";
    attribute ISC_STATUS of TARN_CPLD : entity is "IMPLEMENTED";
    attribute ISC_BLANK_USERCODE of TARN_CPLD : entity is
        "11111111111111111111111111111111";
    attribute ISC_SECURITY of TARN_CPLD : entity is
        "ISC_DISABLE_READ 0, ISC_DISABLE_PROGRAM 1, " &
        "ISC_DISABLE_ERASE 2, ISC_DISABLE_KEY 15-8";
    attribute ISC_FLOW of TARN_CPLD : entity is
        "FLOW_ENABLE INITIALIZE (ISC_ENABLE WAIT TCK 1), " &
        "FLOW_PROGRAM(ARRAY) INITIALIZE (ISC_PROGRAM 16:? WAIT TCK 5), " &
        "FLOW_DISABLE TERMINATE (ISC_DISABLE WAIT TCK 2)";
    attribute ISC_PROCEDURE of TARN_CPLD : entity is
        "PROC_ENABLE = (FLOW_ENABLE), " &
        "PROC_PROGRAM(ARRAY) = (FLOW_ENABLE, FLOW_PROGRAM(ARRAY)), " &
        "PROC_ERROR_EXIT = (FLOW_DISABLE), " &
        "PROC_PROGRAM_DONE = (FLOW_DISABLE)";
    attribute ISC_ACTION of TARN_CPLD : entity is
        "PROGRAM = (PROC_ENABLE, PROC_PROGRAM(ARRAY), PROC_PROGRAM_DONE)";

    attribute ISC_CONFORMANCE of TARN_FLASH : entity is "STD_1532_2002";
    attribute ISC_PIN_BEHAVIOR of TARN_FLASH : entity is "CLAMP";
    attribute ISC_STATUS of TARN_FLASH : entity is "NOT IMPLEMENTED";
    attribute ISC_BLANK_USERCODE of TARN_FLASH : entity is
        "00000000000000000000000000000000";
    attribute ISC_FLOW of TARN_FLASH : entity is
        "FLOW_ENABLE INITIALIZE (ISC_ENABLE WAIT 1.0e-3), " &
        "FLOW_DISABLE TERMINATE (ISC_DISABLE WAIT TCK 2)";
    attribute ISC_PROCEDURE of TARN_FLASH : entity is
        "PROC_ERROR_EXIT = (FLOW_DISABLE), " &
        "PROC_PROGRAM_DONE = (FLOW_ENABLE, FLOW_DISABLE)";
    attribute ISC_ACTION of TARN_FLASH : entity is
        "FINISH = (PROC_PROGRAM_DONE)";
    attribute ISC_DESIGN_WARNING of TARN_FLASH : entity is
        "The write protect switch must be open.";

end two_taps;
