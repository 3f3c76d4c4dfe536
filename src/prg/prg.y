prg_data_file: PRG_DATA;
