#!/usr/bin/env python3
"""Compares a JSON Schema with what decoding says: check_schema.py SCHEMA CASES

CASES is an array of objects with a `spec` and whether decoding has `refused` it. Ends with 77 where
python3-jsonschema is not installed.
"""

import json
import sys

try:
    import jsonschema
except ImportError:
    sys.exit(77)

schema = json.load(open(sys.argv[1], encoding="utf-8"))
cases = json.load(open(sys.argv[2], encoding="utf-8"))
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
wrong = [case for case in cases if validator.is_valid(case["spec"]) == case["refused"]]
for case in wrong[:5]:
    print("schema and decoding disagree over", case["what"], "refused:", case["refused"])
print(len(cases), "cases,", sum(case["refused"] for case in cases), "refused")
sys.exit(1 if wrong else 0)
