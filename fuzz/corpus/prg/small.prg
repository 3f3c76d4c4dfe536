PRG_DATA entity D is
use STD_PRG_2001.all;
use STD_1532_2001.all;
attribute PRG_DESIGN_REVISION of D : entity is A1;
attribute PRG_FREQUENCY of D : entity is "5000000";
attribute PRG_SERIAL_CHANNELS of D : entity is "TAP1 U1 BYPASS (0) U2 IDCODE (01X) , TAP3 U4 BYPASS (1)";
attribute PRG_PROGRAM_REFERENCE of D : entity is "PROGRAM_ISC U1 T a.isc :: b.log PROGRAM_JCS7 U2 T PROGRAM_SVF U4 T :: c";
attribute ISC_CONFORMANCE of T : entity is "STD_1532_2001";
attribute ISC_PIN_BEHAVIOR of T : entity is "CLAMP";
attribute ISC_STATUS of T : entity is "Implemented";
attribute ISC_FLOW of T : entity is "f initialize (ISC_ENABLE wait TCK 1) terminate (ISC_DISABLE wait TCK 1)";
attribute ISC_PROCEDURE of T : entity is "p = (f)";
attribute ISC_ACTION of T : entity is "a = (p)";
end D;
