component_name_decl: %empty;
component_name: %empty;
generic_parameter: %empty;
std_use_statement: %empty;
opt_use_statements: %empty;
component_conformance: %empty;
