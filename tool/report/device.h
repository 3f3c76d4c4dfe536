#pragma once

#include "device_json.h"
#include "diagnosed_file.h"

// One file as a page shows it: {file, state, model, pin_maps, errors, warnings, unchecked,
// findings, source}. The model is that of `tarnlet info --json`, of the text as it was meant where
// it has mistakes, and null for a file of which nothing could be read. The findings are those of
// `tarnlet check --format json`, but for their columns, which count characters of the source.
Json shown_device(const DiagnosedFile &file, const DiagnosisChoice &choice);
