boundary_scan_register_description: %empty;
runbist_description: %empty;
intest_description: %empty;
bsdl_extensions_and_warning: %empty;
