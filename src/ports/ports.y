logical_port_description: %empty;
device_pin_mappings: %empty;
grouped_port_identification: %empty;
scan_port_identification: %empty;
compliance_enable: %empty;
