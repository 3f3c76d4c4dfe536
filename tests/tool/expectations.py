"""What the scripts over the tool share: failures are told and counted, documents held to schemas."""

import json
import pathlib
import sys
import warnings

failures = []


def expect(condition, what):
    if not condition:
        failures.append(what)
        print("FAILED:", what, file=sys.stderr)


def finish(summary, seen):
    print(f"{summary}, {len(failures)} failures")
    sys.exit(1 if failures or not seen else 0)


class Schemas:
    def __init__(self, folder):
        # The way to refer from schema to schema that Debian 12 knows is an old one elsewhere.
        warnings.simplefilter("ignore", DeprecationWarning)
        try:
            import jsonschema
        except ImportError:
            print("skipped: python3-jsonschema is not installed")
            sys.exit(77)
        self.jsonschema = jsonschema
        texts = {path.name: json.loads(path.read_text())
                 for path in pathlib.Path(folder).glob("*.json")}
        self.validators = {}
        for name, schema in texts.items():
            jsonschema.Draft202012Validator.check_schema(schema)
            self.validators[name.removesuffix(".schema.json")] = jsonschema.Draft202012Validator(
                schema, resolver=jsonschema.RefResolver("", schema, store=texts))

    def expect_valid(self, name, document, what):
        error = self.jsonschema.exceptions.best_match(self.validators[name].iter_errors(document))
        expect(error is None, f"{what}: {error and error.json_path}: {error and error.message[:200]}")
