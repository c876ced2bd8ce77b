#!/usr/bin/env python3
"""Holds that every file includes what it uses of the standard library, so that no compiler's headers
decide what builds: for each name of std a header that has it is included by the file itself or, for
NAME.cpp, by its own NAME.h. Prints what is missing and exits with 1; with --mend it also includes
it. A name that the table lacks is wrong too: it belongs there."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDERS = ("src", "cabinet", "lab", "art", "tools", "tests", "bench")

# What stands behind std::, by the header that is asked for.
NAMES = {
    "algorithm": "all_of any_of clamp copy copy_n count count_if fill fill_n find find_if max "
                 "max_element min min_element minmax_element none_of remove_if replace shift_right "
                 "sort stable_sort swap_ranges",
    "array": "array",
    "atomic": "atomic atomic_ref memory_order_acq_rel memory_order_acquire memory_order_relaxed "
              "memory_order_release",
    "bit": "bit_cast countr_zero popcount",
    "cctype": "isalnum isalpha isdigit isprint isspace isupper tolower toupper",
    "charconv": "from_chars",
    "chrono": "chrono",
    "cmath": "abs acos asin atan2 ceil copysign cos exp expm1 fabs floor fmax fmin fmod hypot isfinite "
             "isinf llround log log10 lrint lround pow round sin sqrt tan tanh trunc",
    "condition_variable": "condition_variable",
    "csignal": "raise sig_atomic_t signal",
    "cstdarg": "va_list",
    "cstddef": "byte ptrdiff_t",
    "cstdint": "int8_t int16_t int32_t int64_t intptr_t uint8_t uint16_t uint32_t uint64_t "
               "uintptr_t",
    "cstdio": "FILE fclose ferror fflush fopen fprintf fputc fputs fread fwrite perror printf puts "
              "setvbuf snprintf sscanf vprintf vsnprintf",
    "cstdlib": "_Exit abort atoi exit free getenv strtod strtof strtol strtoll system",
    "cstring": "memcmp memcpy memset strchr strcmp strcpy strcspn strerror strlen strncmp strncpy "
               "strrchr strstr",
    "ctime": "time time_t",
    "deque": "deque",
    "filesystem": "filesystem",
    "fstream": "ifstream ofstream",
    "functional": "function",
    "future": "async future future_status launch promise",
    "initializer_list": "initializer_list",
    "iterator": "istreambuf_iterator",
    "limits": "numeric_limits",
    "list": "list",
    "map": "map",
    "memory": "construct_at destroy_at make_shared make_unique shared_ptr unique_ptr weak_ptr",
    "mutex": "call_once lock_guard mutex once_flag recursive_mutex try_to_lock unique_lock",
    "new": "bad_alloc nothrow",
    "numbers": "numbers",
    "numeric": "iota",
    "optional": "optional",
    "random": "mt19937 mt19937_64",
    "ratio": "micro milli",
    "set": "set",
    "span": "span",
    "sstream": "istringstream ostringstream",
    "stdexcept": "runtime_error",
    "string": "getline stod stoi string string_literals to_string",
    "string_view": "string_view",
    "system_error": "errc error_code generic_category",
    "thread": "this_thread thread",
    "tuple": "tuple",
    "type_traits": "is_trivially_copyable_v",
    "utility": "exchange move pair swap",
    "vector": "erase erase_if vector",
}
# Names that several headers have; the first is the one to include if there is none.
CONTAINERS = ["array", "deque", "list", "map", "set", "span", "string", "string_view", "vector"]
ERASABLE = ["vector", "deque", "list", "string"]
STREAMS = ["fstream", "iostream", "sstream"]
SHARED = {
    "abs": ["cmath", "cstdlib"],
    "begin": ["iterator"] + CONTAINERS,
    "end": ["iterator"] + CONTAINERS,
    "erase": ERASABLE,
    "erase_if": ERASABLE + ["map", "set"],
    "error_code": ["system_error", "filesystem"],
    "hex": ["ios"] + STREAMS,
    "ios": ["ios"] + STREAMS,
    "micro": ["ratio", "chrono"],
    "milli": ["ratio", "chrono"],
    "ostream": ["ostream"] + STREAMS,
    "pair": ["utility", "map"],
    "ranges": ["algorithm"],
    "remove": ["algorithm", "cstdio"],
    "size": ["iterator"] + CONTAINERS,
    "size_t": ["cstddef", "cstdio", "cstdlib", "cstring", "ctime"],
    "streamsize": ["ios"] + STREAMS,
}
# Names without std::, most of them macros.
PLAIN = {
    "assert": "cassert", "errno": "cerrno", "offsetof": "cstddef", "va_end": "cstdarg",
    "va_start": "cstdarg", "CHAR_BIT": "climits", "INT_MAX": "climits", "INT_MIN": "climits",
    "LONG_MAX": "climits", "UINT_MAX": "climits", "PRId64": "cinttypes", "PRIu64": "cinttypes",
    "INT64_MAX": "cstdint", "INT32_MAX": "cstdint", "UINT32_MAX": "cstdint",
    "EXIT_FAILURE": "cstdlib", "EXIT_SUCCESS": "cstdlib", "ENOENT": "cerrno", "EAGAIN": "cerrno",
    "EINTR": "cerrno",
}


def headers_of():
    table = {name: [header] for header, names in NAMES.items() for name in names.split()}
    return table | SHARED


def code(text):
    """A file without includes, comments and texts, which name what they don't use."""
    text = re.sub(r"^#include.*$", "", text, flags=re.M)
    text = re.sub(r'R"(\w*)\(.*?\)\1"', '""', text, flags=re.S)
    text = re.sub(r'"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])\'', '""', text)
    return re.sub(r"//.*|/\*.*?\*/", "", text, flags=re.M)


def included(text):
    return re.findall(r"^#include <([^>]+)>", text, re.M)


def missing(path, table):
    """Pairs for a file: a name, and the headers of which it needs one; none for an unknown name."""
    text = path.read_text()
    have = included(text)
    own = path.with_suffix(".h")
    if path.suffix == ".cpp" and own.exists():
        have += included(own.read_text())
    used = code(text)
    names = {f"std::{name}": table.get(name, []) for name in re.findall(r"\bstd::(\w+)", used)}
    names |= {name: [PLAIN[name]] for name in re.findall(r"\b\w+\b", used) if name in PLAIN}
    return [(name, headers) for name, headers in sorted(names.items())
            if not set(headers) & set(have)]


def mend(path, headers):
    """Includes headers where the file has its others of the standard library, or ahead of the
    project's own; clang-format puts them in order."""
    text = path.read_text()
    block = "".join(f"#include <{h}>\n" for h in sorted(headers))
    first = re.search(r"^#(pragma once|include)", text, re.M).start()
    own = re.escape(str(path.relative_to(ROOT).with_suffix(".h")).removeprefix("src/"))
    head = re.compile(rf'(#pragma once\n\n|#include "{own}"\n\n|#include "[^"]+"\n\n(?=#include))?'
                      r"((#include <[\w/.]+\.h>\n)+\n)?").match(text, first)
    standard = re.search(r"^#include <\w+>", text, re.M)
    at = standard.start() if standard else head.end()
    path.write_text(text[:at] + block + ("" if standard else "\n") + text[at:])


def main():
    table = headers_of()
    files = sorted(p for folder in FOLDERS for p in (ROOT / folder).rglob("*")
                   if p.suffix in (".h", ".cpp"))
    wrong = 0
    for path in files:
        lacks = missing(path, table)
        for name, headers in lacks:
            needs = f"needs <{'> or <'.join(headers)}>" if headers else "is not in this script's table"
            print(f"{path.relative_to(ROOT)}: {name} {needs}")
        wrong += len(lacks)
        if "--mend" in sys.argv and lacks:
            mend(path, {headers[0] for _, headers in lacks if headers})
    print(f"includes: {len(files)} files, {wrong} wrong")
    return 1 if wrong else 0


sys.exit(main())
