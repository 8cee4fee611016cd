"""Which header of the standard library declares which name.

Only what stands here is known: check_includes.py reports every other name after std::, to be added.
"""

# Header -> the names that it declares, without "std::". A name under several headers is declared by each of
# them; the first of them here is the one to include.
NAMES_OF = {
    "cstddef": "size_t ptrdiff_t nullptr_t max_align_t byte to_integer",
    "cstdint": """int8_t int16_t int32_t int64_t uint8_t uint16_t uint32_t uint64_t intptr_t uintptr_t intmax_t
        uintmax_t int_least8_t int_least16_t int_least32_t int_least64_t uint_least8_t uint_least16_t uint_least32_t
        uint_least64_t int_fast8_t int_fast16_t int_fast32_t int_fast64_t uint_fast8_t uint_fast16_t uint_fast32_t
        uint_fast64_t""",
    "utility": """move forward exchange pair make_pair swap declval as_const in_place in_place_t in_place_type
        in_place_index piecewise_construct piecewise_construct_t integer_sequence index_sequence make_index_sequence
        make_integer_sequence index_sequence_for move_if_noexcept cmp_equal cmp_not_equal cmp_less cmp_greater
        cmp_less_equal cmp_greater_equal in_range get tuple_size tuple_size_v tuple_element tuple_element_t""",
    "functional": """function bind bind_front ref cref reference_wrapper invoke mem_fn not_fn hash less less_equal
        greater greater_equal equal_to not_equal_to plus minus multiplies divides modulus negate logical_and
        logical_or logical_not bit_and bit_or bit_xor identity placeholders bad_function_call boyer_moore_searcher
        ranges::less ranges::less_equal ranges::greater ranges::greater_equal ranges::equal_to
        ranges::not_equal_to""",
    "iterator": """next prev advance distance back_inserter front_inserter inserter back_insert_iterator
        front_insert_iterator insert_iterator reverse_iterator make_reverse_iterator move_iterator
        make_move_iterator istream_iterator ostream_iterator istreambuf_iterator ostreambuf_iterator
        iterator_traits input_iterator_tag output_iterator_tag forward_iterator_tag bidirectional_iterator_tag
        random_access_iterator_tag contiguous_iterator_tag input_iterator output_iterator forward_iterator
        bidirectional_iterator random_access_iterator contiguous_iterator sentinel_for iter_value_t
        iter_reference_t iter_difference_t default_sentinel default_sentinel_t begin end cbegin cend rbegin rend
        size ssize empty data ranges::next ranges::prev ranges::advance ranges::distance""",
    "string": """string_literals string wstring u8string u16string u32string basic_string to_string to_wstring stoi stol stoll stoul
        stoull stof stod stold getline char_traits erase erase_if hash begin end cbegin cend rbegin rend size ssize
        empty data""",
    "string_view": """string_view_literals string_view wstring_view u8string_view u16string_view u32string_view basic_string_view
        char_traits hash begin end cbegin cend rbegin rend size ssize empty data""",
    "vector": "vector erase erase_if hash begin end cbegin cend rbegin rend size ssize empty data",
    "array": """array to_array get tuple_size tuple_size_v tuple_element tuple_element_t begin end cbegin cend rbegin
        rend size ssize empty data""",
    "span": "span dynamic_extent as_bytes as_writable_bytes begin end cbegin cend rbegin rend size ssize empty data",
    "deque": "deque erase erase_if begin end cbegin cend rbegin rend size ssize empty data",
    "list": "list erase erase_if begin end cbegin cend rbegin rend size ssize empty data",
    "forward_list": "forward_list erase erase_if begin end cbegin cend empty data",
    "map": "map multimap erase_if begin end cbegin cend rbegin rend size ssize empty data",
    "set": "set multiset erase_if begin end cbegin cend rbegin rend size ssize empty data",
    "unordered_map": "unordered_map unordered_multimap erase_if begin end cbegin cend size ssize empty data",
    "unordered_set": "unordered_set unordered_multiset erase_if begin end cbegin cend size ssize empty data",
    "queue": "queue priority_queue",
    "stack": "stack",
    "bitset": "bitset hash",
    "tuple": """tuple make_tuple tie forward_as_tuple tuple_cat apply make_from_tuple ignore get tuple_size
        tuple_size_v tuple_element tuple_element_t""",
    "optional": "optional nullopt nullopt_t make_optional bad_optional_access hash",
    "variant": """variant monostate visit get get_if holds_alternative variant_size variant_size_v variant_npos
        variant_alternative variant_alternative_t bad_variant_access hash""",
    "any": "any any_cast make_any bad_any_cast",
    "memory": """unique_ptr shared_ptr weak_ptr make_unique make_shared make_unique_for_overwrite
        enable_shared_from_this allocator allocator_traits default_delete addressof to_address static_pointer_cast
        dynamic_pointer_cast const_pointer_cast reinterpret_pointer_cast owner_less pointer_traits construct_at
        destroy_at destroy destroy_n uninitialized_copy uninitialized_copy_n uninitialized_fill uninitialized_fill_n
        uninitialized_move uninitialized_move_n out_ptr inout_ptr bad_weak_ptr align hash""",
    "algorithm": """all_of any_of none_of for_each for_each_n count count_if mismatch find find_if find_if_not
        find_end find_first_of adjacent_find search search_n copy copy_if copy_n copy_backward move_backward fill
        fill_n transform generate generate_n remove remove_if remove_copy remove_copy_if replace replace_if
        replace_copy replace_copy_if swap_ranges iter_swap reverse reverse_copy rotate rotate_copy shift_left
        shift_right sample shuffle unique unique_copy is_partitioned partition partition_copy stable_partition
        partition_point is_sorted is_sorted_until sort partial_sort partial_sort_copy stable_sort nth_element
        lower_bound upper_bound binary_search equal_range merge inplace_merge includes set_difference
        set_intersection set_symmetric_difference set_union is_heap is_heap_until make_heap push_heap pop_heap
        sort_heap max max_element min min_element minmax minmax_element clamp equal lexicographical_compare
        lexicographical_compare_three_way is_permutation next_permutation prev_permutation ranges::""",
    "numbers": "numbers::pi numbers",
    "numeric": """accumulate inner_product partial_sum adjacent_difference iota reduce transform_reduce
        inclusive_scan exclusive_scan gcd lcm midpoint""",
    "ranges": """views ranges::range ranges::view ranges::begin ranges::end ranges::size ranges::data ranges::empty
        ranges::subrange ranges::input_range ranges::forward_range ranges::bidirectional_range
        ranges::random_access_range ranges::contiguous_range ranges::sized_range ranges::range_value_t
        ranges::range_reference_t ranges::views ranges::iterator_t ranges::sentinel_t""",
    "limits": "numeric_limits float_round_style round_to_nearest",
    "type_traits": """integral_constant bool_constant true_type false_type is_same is_same_v is_base_of is_base_of_v
        is_convertible is_convertible_v is_pointer is_pointer_v is_reference is_reference_v is_const is_const_v
        is_enum is_enum_v is_class is_class_v is_void is_void_v is_integral is_integral_v is_floating_point
        is_floating_point_v is_arithmetic is_arithmetic_v is_signed is_signed_v is_unsigned is_unsigned_v is_array
        is_array_v is_function is_function_v is_empty is_empty_v is_final is_final_v is_abstract is_abstract_v
        is_polymorphic is_polymorphic_v is_trivial is_trivial_v is_trivially_copyable is_trivially_copyable_v
        is_standard_layout is_standard_layout_v is_aggregate is_aggregate_v is_invocable is_invocable_v
        is_invocable_r is_invocable_r_v is_nothrow_invocable_v is_null_pointer_v is_member_pointer_v
        is_member_function_pointer_v is_constructible is_constructible_v is_default_constructible
        is_default_constructible_v is_copy_constructible is_copy_constructible_v is_move_constructible
        is_move_constructible_v is_copy_assignable is_copy_assignable_v is_move_assignable is_move_assignable_v
        is_assignable_v is_destructible_v is_swappable_v is_nothrow_constructible_v is_nothrow_swappable_v
        is_nothrow_default_constructible_v is_nothrow_copy_constructible_v is_nothrow_copy_assignable_v
        is_nothrow_move_constructible is_nothrow_move_constructible_v is_nothrow_move_assignable
        is_nothrow_move_assignable_v is_nothrow_destructible_v is_trivially_destructible_v has_virtual_destructor_v
        remove_const remove_const_t remove_cv remove_cv_t remove_cvref remove_cvref_t remove_reference
        remove_reference_t remove_pointer remove_pointer_t remove_extent remove_extent_t add_const add_const_t
        add_pointer add_pointer_t add_lvalue_reference_t add_rvalue_reference_t decay decay_t enable_if enable_if_t
        conditional conditional_t common_type common_type_t underlying_type underlying_type_t make_signed
        make_signed_t make_unsigned make_unsigned_t invoke_result invoke_result_t type_identity type_identity_t
        void_t conjunction conjunction_v disjunction disjunction_v negation negation_v extent extent_v rank rank_v
        is_constant_evaluated""",
    "concepts": """same_as derived_from convertible_to common_with integral signed_integral unsigned_integral
        floating_point assignable_from swappable destructible constructible_from default_initializable
        move_constructible copy_constructible equality_comparable totally_ordered movable copyable semiregular
        regular invocable predicate relation""",
    "compare": """strong_ordering weak_ordering partial_ordering compare_three_way compare_three_way_result_t
        three_way_comparable is_eq is_neq is_lt is_lteq is_gt is_gteq operator<=>""",
    "initializer_list": "initializer_list",
    "bit": "bit_cast endian popcount countl_zero countr_zero bit_width bit_ceil bit_floor has_single_bit rotl rotr",
    "charconv": "from_chars to_chars chars_format from_chars_result to_chars_result",
    "exception": """exception exception_ptr current_exception rethrow_exception make_exception_ptr terminate
        set_terminate get_terminate terminate_handler uncaught_exceptions nested_exception throw_with_nested
        rethrow_if_nested bad_exception""",
    "stdexcept": """logic_error domain_error invalid_argument length_error out_of_range runtime_error range_error
        overflow_error underflow_error""",
    "new": """bad_alloc bad_array_new_length nothrow nothrow_t align_val_t new_handler set_new_handler
        get_new_handler launder""",
    "typeinfo": "type_info bad_cast bad_typeid typeid",
    "typeindex": "type_index hash",
    "source_location": "source_location",
    "system_error": """errc error_code error_condition error_category system_error generic_category system_category
        make_error_code make_error_condition hash""",
    "ostream": "ostream wostream basic_ostream endl ends flush",
    "istream": "istream wistream iostream basic_istream basic_iostream ws",
    "ios": """ios wios ios_base basic_ios streamoff streamsize fpos hex dec oct fixed scientific defaultfloat left
        right internal boolalpha noboolalpha showbase noshowbase showpoint showpos skipws noskipws uppercase
        nouppercase unitbuf nounitbuf""",
    "iostream": "cout cerr clog cin wcout wcerr wclog wcin",
    "iosfwd": """ostream wostream istream wistream iostream ios wios basic_ostream basic_istream basic_ios streambuf
        wstreambuf ostringstream istringstream stringstream wostringstream ofstream ifstream fstream""",
    "sstream": """stringstream ostringstream istringstream wstringstream wostringstream wistringstream
        basic_stringstream basic_ostringstream basic_istringstream stringbuf wstringbuf""",
    "fstream": "fstream ifstream ofstream wfstream wifstream wofstream basic_fstream filebuf wfilebuf",
    "streambuf": "streambuf wstreambuf basic_streambuf",
    "iomanip": "setw setfill setprecision setbase setiosflags resetiosflags put_time get_time quoted",
    "locale": "locale use_facet has_facet ctype codecvt numpunct time_put num_get num_put collate",
    "regex": """regex wregex basic_regex smatch wsmatch cmatch wcmatch match_results sub_match ssub_match wssub_match
        regex_match regex_search regex_replace sregex_iterator wsregex_iterator cregex_iterator wcregex_iterator
        sregex_token_iterator wsregex_token_iterator regex_constants regex_error""",
    "random": """mt19937 mt19937_64 random_device seed_seq minstd_rand minstd_rand0 default_random_engine
        uniform_int_distribution uniform_real_distribution bernoulli_distribution normal_distribution
        discrete_distribution""",
    "chrono": "chrono chrono_literals",
    "ratio": "ratio milli micro nano kilo mega",
    "thread": "thread jthread this_thread hash",
    "mutex": """mutex recursive_mutex timed_mutex lock_guard unique_lock scoped_lock once_flag call_once defer_lock
        adopt_lock try_to_lock lock""",
    "shared_mutex": "shared_mutex shared_lock shared_timed_mutex",
    "condition_variable": "condition_variable condition_variable_any cv_status",
    "future": "future promise async packaged_task shared_future launch future_status",
    "atomic": """atomic atomic_flag atomic_ref atomic_bool atomic_int atomic_long memory_order memory_order_relaxed
        memory_order_acquire memory_order_release memory_order_acq_rel memory_order_seq_cst atomic_thread_fence
        atomic_signal_fence""",
    "stop_token": "stop_token stop_source stop_callback",
    "semaphore": "counting_semaphore binary_semaphore",
    "latch": "latch",
    "filesystem": "filesystem",
    "cstring": """memcpy memmove memcmp memset memchr strlen strcmp strncmp strcpy strncpy strcat strchr strrchr strstr
        strspn strcspn strpbrk strtok strcoll strerror size_t""",
    "cstdlib": """abort exit _Exit atexit at_quick_exit quick_exit getenv system malloc calloc realloc free
        aligned_alloc atoi atol atoll atof strtol strtoll strtoul strtoull strtod strtof strtold abs labs llabs div
        ldiv lldiv div_t ldiv_t rand srand qsort bsearch mbtowc wctomb mbstowcs wcstombs size_t EXIT_SUCCESS
        EXIT_FAILURE""",
    "cstdio": """FILE printf fprintf sprintf snprintf vprintf vfprintf vsnprintf scanf sscanf fscanf puts fputs putc
        fputc putchar getc fgetc getchar fgets ungetc fopen freopen fclose fflush fread fwrite fseek ftell rewind
        feof ferror clearerr perror remove rename tmpfile setvbuf size_t stdin stdout stderr""",
    "cwchar": """wcslen wcscmp wcsncmp wcscpy wcsncpy wcscat wcschr wcsrchr wcsstr wcsspn wcscspn wcspbrk wcstok
        wcscoll wcstol wcstoll wcstoul wcstoull wcstod wcstof wcstold wmemcpy wmemmove wmemcmp wmemset wmemchr
        swprintf fwprintf wprintf vswprintf swscanf mbstate_t mbrtowc wcrtomb wint_t size_t _wcsicmp _wcsnicmp""",
    "cwctype": """towupper towlower iswalpha iswdigit iswalnum iswspace iswupper iswlower iswpunct iswxdigit iswprint
        iswcntrl wint_t""",
    "cctype": "toupper tolower isalpha isdigit isalnum isspace isupper islower ispunct isxdigit isprint iscntrl",
    "cmath": """abs fabs floor ceil trunc round lround llround nearbyint rint lrint fmod remainder pow sqrt cbrt hypot
        exp exp2 expm1 log log2 log10 log1p sin cos tan asin acos atan atan2 sinh cosh tanh isnan isinf isfinite
        isnormal signbit copysign nan nextafter frexp ldexp modf logb ilogb scalbn fmin fmax fdim fma fpclassify
        lerp isgreater isless HUGE_VAL FP_NAN FP_ZERO FP_INFINITE FP_NORMAL FP_SUBNORMAL""",
    "ctime": "time time_t tm clock clock_t difftime mktime gmtime localtime strftime size_t",
    "clocale": "setlocale localeconv lconv",
    "cstdarg": "va_list va_start va_end va_arg va_copy",
    "csignal": "signal raise sig_atomic_t",
    "cerrno": "errno",
    "cassert": "assert",
    "climits": """CHAR_BIT CHAR_MIN CHAR_MAX SCHAR_MIN SCHAR_MAX UCHAR_MAX SHRT_MIN SHRT_MAX USHRT_MAX INT_MIN INT_MAX
        UINT_MAX LONG_MIN LONG_MAX ULONG_MAX LLONG_MIN LLONG_MAX ULLONG_MAX""",
    "cfloat": "FLT_MIN FLT_MAX FLT_EPSILON FLT_DIG DBL_MIN DBL_MAX DBL_EPSILON DBL_DIG DBL_MANT_DIG LDBL_MAX",
    "cxxabi.h": "abi::",
}

# These stand without std:: as well, being macros, or names that C's headers put there too.
WITHOUT_STD = set("""size_t ptrdiff_t int8_t int16_t int32_t int64_t uint8_t uint16_t uint32_t uint64_t intptr_t
    uintptr_t EXIT_SUCCESS EXIT_FAILURE stdin stdout stderr errno assert va_list va_start va_end va_arg va_copy
    typeid _wcsicmp _wcsnicmp memcpy memmove memcmp memset strlen strcmp wcslen wcscmp wcsncmp HUGE_VAL""".split())
WITHOUT_STD.update(NAMES_OF["climits"].split(), NAMES_OF["cfloat"].split())
WITHOUT_STD.update(f"{sign}INT{bits}_{end}" for sign in ("", "U") for bits in (8, 16, 32, 64) for end in ("MIN", "MAX"))
NAMES_OF["cstdint"] += " SIZE_MAX " + " ".join(f"INT{bits}_MIN INT{bits}_MAX UINT{bits}_MAX" for bits in (8, 16, 32, 64))
NAMES_OF["cstddef"] += " offsetof"
WITHOUT_STD.update(("SIZE_MAX", "offsetof"))

# What the standard itself promises a header to include.
_CONTAINERS = "array deque forward_list list map set string unordered_map unordered_set vector".split()
INCLUDED_BY = {name: ("compare", "initializer_list") for name in _CONTAINERS + ["utility"]}
INCLUDED_BY.update({name: ("compare",) for name in "memory optional string_view tuple variant thread system_error "
                    "iterator filesystem chrono typeindex".split()})
INCLUDED_BY.update({name: ("initializer_list",) for name in ("algorithm", "random")})
INCLUDED_BY.update({
    "regex": ("compare", "initializer_list"),
    "ranges": ("compare", "initializer_list", "iterator"),
    "iostream": ("ios", "istream", "ostream", "streambuf", "iosfwd"),
})


def headers_by_name():
    """Each name -> the headers that declare it, the one to include first."""
    headers = {}
    for header, names in NAMES_OF.items():
        for name in names.split():
            headers.setdefault(name, []).append(header)
    return headers
