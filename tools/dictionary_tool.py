#!/usr/bin/env python3
"""Edit the message dictionaries in resources/dictionaries.

The dictionaries are kept in their resource format (UTF-16LE with a byte-order mark,
one quoted "key=text" entry per line). This tool turns them into UTF-8 tab-separated
text for editing and back:

  dictionary_tool.py dump PX_DE_DE.dict > de.tsv        # key<TAB>text, UTF-8
  dictionary_tool.py build de.tsv PX_DE_DE.dict --crlf   # the nine translations use CRLF
  dictionary_tool.py build en.tsv PX_EN_US.dict          # English uses LF
"""
import argparse
import sys


def dump(path):
    data = open(path, 'rb').read()
    if not data.startswith(b'\xff\xfe'):
        sys.exit(f'{path}: no UTF-16LE byte-order mark')
    text = data[2:].decode('utf-16-le')
    for line in text.replace('\r\n', '\n').split('\n'):
        if not line:
            continue
        if not (line.startswith('"') and line.endswith('"')):
            sys.exit(f'{path}: entry not in quotes: {line!r}')
        key, _, value = line[1:-1].partition('=')
        sys.stdout.write(f'{key}\t{value}\n')


def build(source, target, crlf):
    end = '\r\n' if crlf else '\n'
    lines = []
    for number, line in enumerate(open(source, encoding='utf-8'), 1):
        line = line.rstrip('\n')
        if not line:
            continue
        key, tab, value = line.partition('\t')
        if not tab or '\t' in value:
            sys.exit(f'{source}:{number}: expected key<TAB>text')
        lines.append(f'"{key}={value}"{end}')
    with open(target, 'wb') as out:
        out.write(b'\xff\xfe' + ''.join(lines).encode('utf-16-le'))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    sub = parser.add_subparsers(dest='command', required=True)
    d = sub.add_parser('dump')
    d.add_argument('dictionary')
    b = sub.add_parser('build')
    b.add_argument('source')
    b.add_argument('dictionary')
    b.add_argument('--crlf', action='store_true')
    args = parser.parse_args()
    if args.command == 'dump':
        dump(args.dictionary)
    else:
        build(args.source, args.dictionary, args.crlf)


if __name__ == '__main__':
    main()
