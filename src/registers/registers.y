instruction_register: %empty;
optional_register: %empty;
register_access_description: %empty;
