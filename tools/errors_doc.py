#!/usr/bin/env python3
"""Regenerates the code table and the English key list of docs/errors.md from
src/api/message_table.def and resources/dictionaries/PX_EN_US.dict.

The prose of docs/errors.md stays as it is; only the parts between the markers
<!-- codes --> / <!-- /codes --> and <!-- english --> / <!-- /english --> are rewritten."""
import pathlib
import re

root = pathlib.Path(__file__).resolve().parent.parent
OWN = ('$$$/PXError/Converter/', '$$$/PXError/ObjectModel/', '$$$/PXError/Writer/')

rows = []
for line in (root / 'src/api/message_table.def').read_text().splitlines():
    m = re.match(r'PX_MESSAGE\((\w+), (\d+), "(.*)"\)$', line.strip())
    if m:
        rows.append((int(m.group(2)), m.group(3).replace('\\"', '"').split('=', 1)[0]))

codes = {}
keys = []
for code, key in rows:
    codes.setdefault(code, [])
    if key not in codes[code]:
        codes[code].append(key)
    if key not in keys:
        keys.append(key)

english = set()
text = (root / 'resources/dictionaries/PX_EN_US.dict').read_bytes()[2:].decode('utf-16-le')
for entry in text.split('\n'):
    if entry:
        english.add(entry[1:-1].split('=', 1)[0])

table = ['| code | keys |', '|---|---|']
for code in sorted(codes):
    table.append(f'| {code} | ' + ', '.join(f'`{k.replace("$$$/PXError", "")}`' for k in codes[code]) + ' |')
listed = [f'- `{k}`' for k in keys if not k.startswith(OWN) and k in english]

doc = (root / 'docs/errors.md').read_text()
doc = re.sub(r'(<!-- codes -->\n).*?(<!-- /codes -->)', lambda m: m.group(1) + '\n'.join(table) + '\n' + m.group(2), doc, flags=re.S)
doc = re.sub(r'(<!-- english -->\n).*?(<!-- /english -->)', lambda m: m.group(1) + '\n'.join(listed) + '\n' + m.group(2), doc, flags=re.S)
(root / 'docs/errors.md').write_text(doc)
print(f'{len(codes)} codes, {len(listed)} English keys')
