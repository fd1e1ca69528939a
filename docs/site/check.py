#!/usr/bin/env python3
"""Checks the site that scripts/build_site.sh has made: check.py HTML NAMES HEADERS.

Every link leads to a page of the site and a place on it, and every public declaration of the headers, as another reader of C++ finds
them (universal-ctags), is in the site's list of names. Tells what is wrong and ends with 1.
"""
import html.parser
import json
import os
import re
import subprocess
import sys
import urllib.parse
import xml.etree.ElementTree as ElementTree

OUTSIDE = {'https://www.doxygen.org/index.html'}
# A heading that Doxygen leads to and then leaves out: that of nested classes which aren't public.
NO_PLACES = {'nested-classes'}
KINDS = ['class', 'struct', 'union', 'enum', 'enumerator', 'typedef', 'prototype', 'function', 'variable', 'member', 'externvar']


class Page(html.parser.HTMLParser):
    """The places and links of a page."""

    def __init__(self, path):
        super().__init__()
        self.places = set()
        self.links = []
        with open(path, encoding='utf-8') as file:
            self.feed(file.read())

    def handle_starttag(self, tag, attrs):
        values = dict(attrs)
        self.places.update(filter(None, (values.get('id'), values.get('name') if tag == 'a' else None)))
        self.links += filter(None, (values.get('href'), values.get('src')))


def dead_links(folder):
    pages = {name: Page(os.path.join(folder, name)) for name in sorted(os.listdir(folder)) if name.endswith('.html')}
    count = 0
    for name, page in pages.items():
        for link in page.links:
            count += 1
            parts = urllib.parse.urlsplit(link)
            if parts.scheme == 'javascript' or link in OUTSIDE:
                continue
            target = urllib.parse.unquote(parts.path) or name
            if parts.scheme or not os.path.exists(os.path.join(folder, target)):
                yield f'{name}: leads to {link}, which is not there'
            elif parts.fragment in NO_PLACES:
                continue
            elif parts.fragment and target in pages and urllib.parse.unquote(parts.fragment) not in pages[target].places:
                yield f'{name}: leads to a place that {target} doesn\'t have: {parts.fragment}'
    print(f'{len(pages)} pages, {count} links')


def plain(name):
    """A name as both readers give it: without blanks and the arguments of specialised templates."""
    name = name.replace(' ', '')
    return name if 'operator' in name else re.sub('<.*>', '', name)


def site_names(tags):
    """The names that the site has, each behind that of its class and namespace."""
    names = set()
    for compound in ElementTree.parse(tags).getroot():
        scope = compound.findtext('name')
        names.add(scope)
        inside = '' if compound.get('kind') in ('file', 'page') else scope + '::'
        for member in compound.findall('member'):
            names.add(plain(inside + member.findtext('name')))
            if member.get('kind') == 'enumeration':
                names.update(inside + value.text for value in member.findall('enumvalue'))
    return names


def declared_names(folder):
    tags = subprocess.run(
        ['ctags', '-R', '--languages=C++', '--langmap=C++:.h', '--kinds-C++=+pxn-l', '--fields=+aKSZ', '--output-format=json', '-I', 'ZP_API',
         '-I', 'DECLARE_SERIAL+,DECLARE_DYNAMIC+,DECLARE_DYNCREATE+,DECLARE_MESSAGE_MAP+', '-f', '-', folder],
        check=True, capture_output=True, text=True).stdout
    found = [json.loads(line) for line in tags.splitlines()]
    hidden = {tag.get('scope', '') + '::' + tag['name'] for tag in found if tag.get('access') == 'private'}
    for tag in found:
        scope = re.sub(r'__anon\w+(::)?', '', tag.get('scope', '')).rstrip(':')
        if tag['kind'] not in KINDS or tag['name'].startswith('__anon') or tag.get('access') == 'private' or scope in hidden:
            continue
        if 'access' not in tag and scope + '::' + tag['name'] in hidden:  # the definition of a private one outside of its class
            continue
        if tag['kind'] == 'enumerator':  # the site has them beside their enumeration
            scope = scope.rpartition('::')[0] if tag.get('scopeKind') == 'enum' else scope
        yield tag['path'], plain((scope + '::' if scope else '') + tag['name'])


def main(html_folder, tags, headers):
    problems = list(dead_links(html_folder))
    names = site_names(tags)
    declared = sorted(set(declared_names(headers)))
    problems += [f'{path}: {name} is not in the site' for path, name in declared if name not in names]
    print(f'{len(declared)} declarations')
    print('\n'.join(problems), file=sys.stderr, end='\n' if problems else '')
    return 1 if problems or len(declared) < 1000 else 0


if __name__ == '__main__':
    sys.exit(main(*sys.argv[1:]))
