#!/usr/bin/env python3
"""Gives Doxygen the headers' plain comments in its own form, and the pages' links: filter.py FILE prints the file.

A comment in front of declarations tells of all of them up to the next blank line, one behind a declaration of that one. The first
comment of a header, and any that no declaration follows, tell of the header.
"""
import re
import sys

COMMENT = re.compile(r'^( *)//(?: (.*))?$')
TRAILING = re.compile(r'^(?!} +// namespace )(.*[;,{}\w)\]]) +// (.*)$')
# What is no row of declarations: its comment is its own.
SINGLE = re.compile(r'^(?:template|class|struct|enum|union|namespace|friend|#|ZP_NAME|public:|protected:|private:)')


def told(text):
    """The text without what Doxygen would take for a command, a tag, or a link."""
    parts = re.split(r'(`[^`]*`)', text)
    for i in range(0, len(parts), 2):
        parts[i] = re.sub(r'([\\@<>#%&*_"~|$])', r'\\\1', parts[i]).replace('::', '\\::').replace('\\*', '&lowast;').replace('\\_', '_')
    return ''.join(parts)


def row_end(lines, start):
    """The line behind the declarations that follow each other from start on."""
    indent = len(lines[start]) - len(lines[start].lstrip())
    end = start
    while end < len(lines):
        line = lines[end]
        if not line.strip() or len(line) - len(line.lstrip()) < indent or (end > start and (COMMENT.match(line) or line.endswith(' = delete;'))):
            break
        end += 1
    return end


def filtered(name, lines):
    out = []
    i = 0
    close = -1
    while i < len(lines):
        if i == close:
            out.append('/** @} */')
            close = -1
        start = i
        while i < len(lines) and COMMENT.match(lines[i]):
            i += 1
        if i == start:
            trailing = TRAILING.match(lines[i])
            out.append(f'{trailing[1]}  ///< {told(trailing[2])}' if trailing and not lines[i].startswith('#') else lines[i])
            i += 1
            continue
        text = [told(COMMENT.match(line)[2] or '') for line in lines[start:i]]
        indent = COMMENT.match(lines[start])[1]
        follows = lines[i].strip() if i < len(lines) else ''
        if start == 0 or not follows or follows.startswith(('}', '//', '#include')):
            out += [f'/// @file {name}'] + ['/// ' + line for line in text] + ['']
            continue
        end = row_end(lines, i)
        if not SINGLE.match(follows) and end > i + 1:
            out.append(indent + '/** @{ */')
            close = end
        out += [f'{indent}/** {text[0]}'] + [f'{indent} * {line}' for line in text[1:]] + [indent + ' */']
    if close >= 0:
        out.append('/** @} */')
    return out


def place(heading):
    return re.sub(r'[^\w-]', '', heading.lower().replace(' ', '-'))


def filtered_page(name, text):
    """A page in the dialect of Doxygen, which shows marks of code in links and headings, ends code at an apostrophe, makes one dash of two,
    and has pages of examples."""
    text = re.sub(r'\]\([./]*examples/(\w+)\.cpp\)', r'](\1_8cpp-example.html)', text)
    text = re.sub(r'\[`([^`\]]*)`\]\(', r'[\1](', text)
    # Places: a heading has the name that other readers of the page make of it, behind the page's.
    text = re.sub(r'^(##+) (.*)$', lambda head: head[1] + ' ' + head[2].replace('`', '') + f' {{#{name}-{place(head[2])}}}', text, flags=re.MULTILINE)
    text = re.sub(r'\]\((?:[./\w-]*?([\w-]+)\.md)?#([\w-]+)\)', lambda link: f'](@ref {link[1] or name}-{link[2]})', text)
    lines = text.split('\n')
    return '\n'.join(line if line.startswith('    ') else re.sub(r'`([^`]+)`|(?<!-)--(?=\w)', span, line) for line in lines)


def span(found):
    """Code, or two dashes outside of code."""
    if found[1] is None:
        return '\\--'
    return f'`` {found[1]} ``' if re.search('[\'"]', found[1]) else found[0]


if __name__ == '__main__':
    path = sys.argv[1]
    with open(path, encoding='utf-8') as file:
        content = file.read()
    if path.endswith('.md'):
        print(filtered_page(path.split('/')[-1][:-3], content), end='')
    else:
        print('\n'.join(filtered(path[path.find('zpbase/'):], content.split('\n'))))
