#!/usr/bin/env python3
"""Checks that every file includes what it uses of the standard library, so that the build doesn't depend
on a compiler's own headers: the file itself or, for NAME.cpp, its NAME.h includes a header for each name
in std. Prints what is missing and exits with 1; with --mend it also adds the includes. A name that is not
in the table is an error too: add it."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDERS = ("src", "cabinet", "lab", "art", "tools", "tests", "bench")

# The names in std, by their header.
NAMES = {
    "algorithm": "adjacent_find all_of any_of binary_search clamp copy copy_backward copy_if "
                 "copy_n count count_if equal equal_range fill fill_n find find_first_of find_if "
                 "find_if_not for_each for_each_n generate generate_n is_sorted "
                 "lexicographical_compare lower_bound max max_element merge min min_element "
                 "minmax minmax_element mismatch move_backward next_permutation none_of "
                 "nth_element partial_sort partition remove_if replace replace_if reverse rotate "
                 "search set_difference set_intersection set_union shift_left shift_right shuffle "
                 "sort stable_partition stable_sort swap_ranges transform unique upper_bound",
    "any": "any any_cast",
    "array": "array to_array",
    "atomic": "atomic atomic_bool atomic_flag atomic_int atomic_ref atomic_signal_fence "
              "atomic_thread_fence memory_order memory_order_acq_rel memory_order_acquire "
              "memory_order_relaxed memory_order_release memory_order_seq_cst",
    "barrier": "barrier",
    "bit": "bit_cast bit_ceil bit_floor bit_width countl_one countl_zero countr_one countr_zero "
           "endian has_single_bit popcount rotl rotr",
    "bitset": "bitset",
    "cctype": "isalnum isalpha isdigit isprint ispunct isspace isupper isxdigit tolower toupper",
    "charconv": "chars_format from_chars from_chars_result to_chars to_chars_result",
    "chrono": "chrono",
    "cmath": "acos asin asinh atan atan2 cbrt ceil copysign cos cosh erf exp exp2 expm1 fabs "
             "floor fma fmax fmin fmod hypot isfinite isinf isnan ldexp lerp llround log log10 "
             "log1p log2 lrint lround modf nearbyint nextafter pow remainder rint round signbit "
             "sin sinh sqrt tan tanh trunc",
    "concepts": "convertible_to derived_from floating_point integral invocable same_as",
    "condition_variable": "condition_variable condition_variable_any cv_status",
    "csignal": "raise sig_atomic_t signal",
    "cstdarg": "va_list",
    "cstddef": "byte max_align_t nullptr_t ptrdiff_t to_integer",
    "cstdint": "int16_t int32_t int64_t int8_t intptr_t uint16_t uint32_t uint64_t uint8_t "
               "uintptr_t",
    "cstdio": "FILE fclose ferror fflush fgetc fgets fopen fprintf fputc fputs fread freopen "
              "fscanf fseek ftell fwrite getchar perror printf putc putchar puts rename rewind "
              "scanf setvbuf snprintf sprintf sscanf tmpfile ungetc vfprintf vprintf vsnprintf",
    "cstdlib": "_Exit abort atexit atof atoi atol calloc div exit free getenv malloc qsort "
               "quick_exit realloc srand strtod strtof strtol strtold strtoll strtoul strtoull system",
    "cstring": "memchr memcmp memcpy memmove memset strcat strchr strcmp strcpy strcspn strerror "
               "strlen strncat strncmp strncpy strpbrk strrchr strspn strstr strtok",
    "ctime": "clock difftime gmtime localtime mktime strftime time time_t tm",
    "cwchar": "mbstate_t wcslen",
    "deque": "deque",
    "exception": "current_exception exception exception_ptr rethrow_exception set_terminate "
                 "terminate uncaught_exceptions",
    "filesystem": "filesystem",
    "fstream": "ifstream ofstream",
    "functional": "bind cref equal_to function greater hash invoke less minus multiplies negate "
                  "not_fn plus ref reference_wrapper",
    "future": "async future future_status launch packaged_task promise shared_future",
    "initializer_list": "initializer_list",
    "iomanip": "get_time put_time quoted setfill setprecision setw",
    "iostream": "cerr cin clog cout",
    "istream": "iostream istream",
    "iterator": "advance back_inserter distance front_inserter inserter istream_iterator "
                "istreambuf_iterator iterator_traits make_move_iterator make_reverse_iterator "
                "next ostream_iterator ostreambuf_iterator prev reverse_iterator ssize",
    "latch": "latch",
    "limits": "numeric_limits",
    "list": "list",
    "map": "map multimap",
    "memory": "addressof align allocator allocator_traits assume_aligned construct_at "
              "default_delete destroy destroy_at destroy_n dynamic_pointer_cast "
              "enable_shared_from_this make_shared make_unique shared_ptr static_pointer_cast "
              "to_address uninitialized_copy uninitialized_fill unique_ptr weak_ptr",
    "mutex": "adopt_lock call_once defer_lock lock lock_guard mutex once_flag recursive_mutex "
             "scoped_lock timed_mutex try_lock try_to_lock unique_lock",
    "new": "align_val_t bad_alloc get_new_handler hardware_destructive_interference_size launder "
           "nothrow set_new_handler",
    "numbers": "numbers",
    "numeric": "accumulate adjacent_difference exclusive_scan gcd inclusive_scan inner_product "
               "iota lcm midpoint partial_sum reduce transform_reduce",
    "optional": "make_optional nullopt nullopt_t optional",
    "ostream": "endl ends flush",
    "queue": "priority_queue queue",
    "random": "bernoulli_distribution default_random_engine discrete_distribution "
              "exponential_distribution minstd_rand mt19937 mt19937_64 normal_distribution "
              "poisson_distribution random_device seed_seq uniform_int_distribution "
              "uniform_real_distribution",
    "ratio": "kilo mega nano ratio",
    "regex": "regex regex_match regex_replace regex_search smatch",
    "semaphore": "binary_semaphore counting_semaphore",
    "set": "multiset set",
    "shared_mutex": "shared_lock shared_mutex",
    "source_location": "source_location",
    "span": "as_bytes as_writable_bytes dynamic_extent span",
    "sstream": "istringstream ostringstream stringbuf stringstream",
    "stack": "stack",
    "stdexcept": "domain_error invalid_argument length_error logic_error out_of_range "
                 "overflow_error range_error runtime_error underflow_error",
    "stop_token": "stop_source stop_token",
    "streambuf": "streambuf",
    "string": "basic_string char_traits getline stod stof stoi stol stold stoll stoul stoull "
              "string string_literals to_string u16string u32string u8string wstring",
    "string_view": "basic_string_view string_view string_view_literals",
    "system_error": "errc error_category error_condition generic_category make_error_code "
                    "system_category system_error",
    "thread": "jthread this_thread thread",
    "tuple": "apply forward_as_tuple ignore make_tuple tie tuple tuple_element tuple_size "
             "tuple_size_v",
    "type_traits": "add_const_t add_pointer_t alignment_of_v common_type_t conditional_t "
                   "conjunction_v decay_t disjunction_v enable_if_t extent_v false_type "
                   "integral_constant invoke_result_t is_arithmetic_v is_array_v is_base_of_v "
                   "is_class_v is_const_v is_constant_evaluated is_convertible_v "
                   "is_copy_constructible_v is_default_constructible_v is_empty_v is_enum_v "
                   "is_floating_point_v is_integral_v is_invocable_v "
                   "is_nothrow_move_constructible_v is_pointer_v is_reference_v is_same_v "
                   "is_signed_v is_standard_layout_v is_trivial_v is_trivially_copyable_v "
                   "is_trivially_destructible_v is_unsigned_v is_void_v make_signed_t "
                   "make_unsigned_t remove_const_t remove_cv_t remove_cvref_t remove_extent_t "
                   "remove_pointer_t remove_reference_t true_type type_identity_t "
                   "underlying_type_t void_t",
    "typeinfo": "type_info",
    "unordered_map": "unordered_map unordered_multimap",
    "unordered_set": "unordered_multiset unordered_set",
    "utility": "as_const cmp_equal cmp_greater cmp_less declval exchange forward in_place "
               "in_place_t in_range index_sequence integer_sequence make_index_sequence make_pair "
               "move move_if_noexcept piecewise_construct swap",
    "variant": "get_if holds_alternative monostate variant visit",
    "vector": "vector",
}
# Names that several headers declare; the first is the one to include if there is none.
CONTAINERS = ["array", "deque", "list", "map", "set", "span", "string", "string_view", "vector"]
ERASABLE = ["vector", "deque", "list", "string"]
STREAMS = ["fstream", "iostream", "sstream"]
SHARED = {
    "abs": ["cmath", "cstdlib"],
    "begin": ["iterator"] + CONTAINERS,
    "data": ["iterator"] + CONTAINERS,
    "empty": ["iterator"] + CONTAINERS,
    "get": ["tuple", "array", "utility", "variant"],
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
# A loop over a list in braces uses initializer_list without naming it.
LIST_LOOP = re.compile(r"\bfor \([^;{}]*: \{")
LIST_HEADERS = ["initializer_list", "algorithm", "array", "deque", "list", "map", "set", "string",
                "utility", "vector"]
# Names outside of std, most of them macros.
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
    """A file without includes, comments and texts: names in those are not uses."""
    text = re.sub(r"^#include.*$", "", text, flags=re.M)
    text = re.sub(r'R"(\w*)\(.*?\)\1"', '""', text, flags=re.S)
    text = re.sub(r'"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])\'', '""', text)
    return re.sub(r"//.*|/\*.*?\*/", "", text, flags=re.M)


def included(text):
    return re.findall(r"^#include <([^>]+)>", text, re.M)


def missing(path, table):
    """Pairs for a file: a name, and the headers of which one is needed; none for an unknown name."""
    text = path.read_text()
    have = included(text)
    own = path.with_suffix(".h")
    if path.suffix == ".cpp" and own.exists():
        have += included(own.read_text())
    used = code(text)
    names = {f"std::{name}": table.get(name, []) for name in re.findall(r"\bstd::(\w+)", used)}
    names |= {name: [PLAIN[name]] for name in re.findall(r"\b\w+\b", used) if name in PLAIN}
    if LIST_LOOP.search(used):
        names["a list in braces"] = LIST_HEADERS
    return [(name, headers) for name, headers in sorted(names.items())
            if not set(headers) & set(have)]


def mend(path, headers):
    """Adds includes beside the file's other standard headers, or before the project's own;
    clang-format puts them in order."""
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
