"""The call layer over the generated table of C prototypes (_flat.py).

Each C function becomes one `Function`, whose plan is read off the prototype
once: which parameters are results (written by the call and returned), which
pairs follow the text or value size protocols (hidden: the wrapper asks for
the size and calls again), which input pairs are a buffer and its size or an
array and its count (given as one Python object), and which are handles. A
status of -1 becomes `Error` with the error slot's text. One lock is held
around the call and the slot read, because the slot is one per process."""

import ctypes as C
import re
import threading

from . import _flat, _library


class Error(Exception):
    """A failed library call; the text is the library's error slot."""


lib, library_path = _library.load()
LOCK = threading.RLock()

HANDLE_TYPES = {name: cls for name, (cls, _) in _flat.HANDLES.items()}
DELETE_NAMES = {name: delete for name, (_, delete) in _flat.HANDLES.items()}

_SCALAR = re.compile(r"^(const )?(bool|char|int|unsigned|long|float|double|size_t|u?int(8|16|32|64)_t)$")
_SIZE_NAME = re.compile(r"(^size$|Size$|Bytes$|^bytes$)")
_COUNT_NAME = re.compile(r"(^count$|Count$)")


def _raw(name, restype, params):
    f = getattr(lib, name, None)
    if f is None:
        return None
    f.restype = restype
    f.argtypes = [p[2] for p in params]
    return f


_get_error = lib.sorvane_getErrorMessage
_get_error.restype = C.c_int32
_get_error.argtypes = [C.c_char_p, C.POINTER(C.c_int64)]


def slot_text():
    """The error slot, read whole (the caller holds LOCK)."""
    size = C.c_int64(256)
    buf = C.create_string_buffer(256)
    if _get_error(buf, C.byref(size)) != 0:
        buf = C.create_string_buffer(size.value)
        _get_error(buf, C.byref(size))
    return buf.value.decode("utf-8", "replace")


def _pointee(ctype_text):
    return ctype_text[:-1] if ctype_text.endswith("*") else ctype_text


def _is_result(ctype_text):
    """A non-const pointer to a scalar or to a handle pointer: a result slot."""
    if ctype_text.startswith("const ") or not ctype_text.endswith("*"):
        return False
    base = ctype_text[:-1]
    if base.endswith("*"):
        return not base.endswith("**")
    return bool(_SCALAR.match(base)) and base != "char"


class Function:
    """One C function with its call plan."""

    def __init__(self, name, header, result, params, raw):
        self.name = name
        self.header = header
        self.c_result, self.restype = result
        self.params = params
        self.raw = raw
        self._plan()

    # ----- plan -----

    def _plan(self):
        p = self.params
        n = len(p)
        self.kinds = kinds = [None] * n
        i = 0
        while i < n:
            name, ct, _ = p[i]
            nxt = p[i + 1] if i + 1 < n else (None, None, None)
            nxt2 = p[i + 2] if i + 2 < n else (None, None, None)
            if ct == "char*" and nxt[1] == "int64_t*":
                kinds[i], kinds[i + 1] = "text", "size"
                i += 2
                continue
            if ct == "void*" and nxt[1] == "int64_t*":
                kinds[i], kinds[i + 1] = "bytes", "size"
                i += 2
                continue
            if ct.endswith("*") and not ct.startswith("const ") and _SCALAR.match(ct[:-1]) and ct != "void*":
                # One or more arrays of this type sharing one capacity and one count.
                j = i
                while j < n and p[j][1] == ct:
                    j += 1
                if (j + 1 < n and p[j][1] == "int64_t" and p[j + 1][1] == "int64_t*"
                        and p[j + 1][0] == "pvalueCount"):
                    kinds[i] = "array"
                    for k in range(i + 1, j):
                        kinds[k] = "array+"
                    kinds[j], kinds[j + 1] = "size", "size"
                    i = j + 2
                    continue
            if (ct.startswith("const ") and ct.endswith("*") and _SCALAR.match(ct[:-1]) and ct != "const char*"
                    and nxt[1] == "int64_t" and _SIZE_NAME.search(nxt[0] or "") and nxt2[1] == "int64_t"
                    and _COUNT_NAME.search(nxt2[0] or "")):
                kinds[i], kinds[i + 1], kinds[i + 2] = "arrin3", "size", "size"
                i += 3
                continue
            if (ct in ("const void*", "const uint8_t*", "const unsigned char*") and nxt[1] == "int64_t"
                    and _SIZE_NAME.search(nxt[0] or "")):
                kinds[i], kinds[i + 1] = "bufin", "size"
                i += 2
                continue
            if (ct.startswith("const ") and ct.endswith("*") and _SCALAR.match(ct[:-1]) and ct != "const char*"
                    and nxt[1] == "int64_t" and _COUNT_NAME.search(nxt[0] or "")):
                kinds[i], kinds[i + 1] = "arrin", "size"
                i += 2
                continue
            if (ct.endswith("**") and not ct.startswith("const ") and ct[:-2] in HANDLE_TYPES
                    and nxt[1] == "int64_t" and nxt2[1] == "int64_t*" and nxt2[0] == "pvalueCount"):
                # An array of new handles under the array size protocol.
                kinds[i], kinds[i + 1], kinds[i + 2] = "handles", "size", "size"
                i += 3
                continue
            if _pointee(ct).replace("const ", "") in HANDLE_TYPES and ct.count("*") == 1:
                kinds[i] = "handle"
            elif ct.endswith("**") and not ct.startswith("const ") and ct[:-2] in HANDLE_TYPES:
                kinds[i] = "hout"
            elif ct.endswith("*") and nxt[1] == "int64_t" and not ct.startswith("const "):
                kinds[i] = "raw"  # a buffer with its capacity: the caller passes both
            elif _is_result(ct):
                kinds[i] = "hout" if ct[:-2] in HANDLE_TYPES else ("vout" if ct == "void**" else "out")
            elif ct == "const char*":
                kinds[i] = "str"
            else:
                kinds[i] = "raw"
            i += 1
        self.inputs = [k for k in range(n) if kinds[k] in ("str", "handle", "raw", "bufin", "arrin", "arrin3")]
        self.input_names = [p[k][0] for k in self.inputs]
        self.results = [k for k in range(n) if kinds[k] in ("out", "hout", "vout", "text", "bytes", "array", "handles")]
        self.groups = [k for k in self.results if kinds[k] in ("text", "bytes", "array", "handles")]
        self.simple = not self.groups and all(kinds[k] in ("out", "handle", "raw", "hout") for k in range(n))
        # A cast (_toX) hands out the same object under another handle type.
        self.alias = bool(re.search(r"_to[A-Z]\w*$", self.name))
        self._self_pos = {}
        self.result_handle = None
        if self.c_result.endswith("*") and self.c_result[:-1] in HANDLE_TYPES:
            self.result_handle = self.c_result[:-1]
        self.fast = self._compile()

    def _compile(self):
        """A call of its own for functions without size protocols: the plan
        unrolled into straight code, which costs a fraction of the generic path."""
        kinds = self.kinds
        if self.groups or self.raw is None or self.result_handle is not None:
            return None
        if self.restype not in (C.c_int32, None):
            return None
        if any(k not in ("out", "hout", "vout", "handle", "str", "raw") for k in kinds):
            return None
        names = [f"a{j}" for j in range(len(self.inputs))]
        # Every argument is converted here, so the call can go through a copy of
        # the function without argtypes, which skips ctypes' own (slower)
        # conversion; handle types are checked by name instead.
        untyped = all(kinds[k] != "raw" or not self.params[k][1].endswith("*") for k in range(len(kinds)))
        raw = self.raw
        if untyped:
            raw = lib[self.name]
            raw.restype = self.restype
        env = {"raw": raw, "LOCK": LOCK, "Error": Error, "slot_text": slot_text, "byref": C.byref,
               "wrap": wrap, "ArgumentError": C.ArgumentError, "fname": self.name, "bad": _bad_handle}
        pre, args, post = [], [], []
        owner = None
        pos = dict(zip(self.inputs, names))
        for k, kind in enumerate(kinds):
            if kind in ("out", "hout", "vout"):
                env[f"T{k}"] = self.params[k][2]._type_
                pre.append(f"    o{k} = T{k}()")
                args.append(f"byref(o{k})")
                if kind == "hout":
                    env[f"N{k}"] = self.params[k][1][:-2]
                    post.append(f"wrap(N{k}, o{k}, {{owner}}) if o{k} else None")
                else:
                    post.append(f"o{k}.value")
            elif kind == "handle":
                a = pos[k]
                owner = owner or a
                if untyped:
                    env[f"N{k}"] = _pointee(self.params[k][1]).replace("const ", "")
                    args.append(f"(None if {a} is None else {a}._ptr if {a}._c_name == N{k} else bad(fname, {a}, N{k}))")
                else:
                    args.append(f"(None if {a} is None else {a}._ptr)")
            elif kind == "str":
                a = pos[k]
                args.append(f"({a}.encode() if isinstance({a}, str) else {a})")
            elif untyped:
                env[f"T{k}"] = self.params[k][2]
                args.append(f"T{k}({pos[k]})")
            else:
                args.append(pos[k])
        post = [x.replace("{owner}", owner if (self.alias and owner) else "None") for x in post]
        check = "        if rc != 0:\n            raise Error(slot_text())\n" if self.restype is C.c_int32 else ""
        src = (f"def call({', '.join(names)}):\n" + "\n".join(pre) + ("\n" if pre else "")
               + "    with LOCK:\n        try:\n"
               + f"            rc = raw({', '.join(args)})\n"
               + "        except ArgumentError as e:\n            raise TypeError(f'{fname}: {e}') from None\n"
               + check
               + (f"    return {post[0]}\n" if len(post) == 1 else
                  f"    return ({', '.join(post)})\n" if post else "    return None\n"))
        exec(src, env)  # noqa: S102 - text built above from the prototype alone
        return env["call"]

    def on(self, obj, *values):
        """The call with `obj` in the place of the first parameter of its handle type."""
        pos = self._self_pos.get(obj._c_name)
        if pos is None:
            pos = 0
            for j, k in enumerate(self.inputs):
                if self.kinds[k] == "handle" and _pointee(self.params[k][1]).replace("const ", "") == obj._c_name:
                    pos = j
                    break
            self._self_pos[obj._c_name] = pos
        if pos == 0:
            return (self.fast or self.generic)(obj, *values)
        values = list(values)
        values.insert(pos, obj)
        return self(*values)

    def __repr__(self):
        args = ", ".join(f"{ct} {n}" for n, ct, _ in self.params)
        return f"<talvex function {self.c_result} {self.name}({args})>"

    # ----- call -----

    def __call__(self, *values):
        if self.fast is not None:
            return self.fast(*values)
        return self.generic(*values)

    def generic(self, *values):
        if self.raw is None:
            raise Error(f"{self.name} is not in the loaded library {library_path}")
        if len(values) != len(self.inputs):
            raise TypeError(f"{self.name}({', '.join(self.input_names)}) takes {len(self.inputs)} arguments, "
                            f"{len(values)} given")
        p = self.params
        kinds = self.kinds
        args = [None] * len(p)
        owner = None
        for k, v in zip(self.inputs, values):
            kind = kinds[k]
            if kind == "handle":
                if v is not None:
                    if owner is None:
                        owner = v
                    v = v._ptr
                args[k] = v
            elif kind == "str":
                args[k] = v.encode("utf-8") if isinstance(v, str) else v
            elif kind == "bufin":
                args[k], args[k + 1] = _buffer(v)
                if p[k][2] is not C.c_void_p and args[k] is not None:
                    keep = args[k]  # noqa: F841 - alive through the call
                    args[k] = C.cast(C.c_char_p(keep) if isinstance(keep, bytes) else keep, p[k][2])
            elif kind == "arrin":
                args[k], args[k + 1] = _array(v, p[k][2]._type_)
            elif kind == "arrin3":
                args[k], args[k + 2] = _array(v, p[k][2]._type_)
                args[k + 1] = args[k + 2] * C.sizeof(p[k][2]._type_)
            else:
                args[k] = v
        outs = {}
        for k in self.results:
            kind = kinds[k]
            if kind in ("out", "hout", "vout"):
                o = p[k][2]._type_()
                outs[k] = o
                args[k] = C.byref(o)
        with LOCK:
            if self.groups:
                try:
                    self._call_sized(args, outs)
                except C.ArgumentError as e:
                    raise TypeError(f"{self.name}: {e}") from None
            else:
                try:
                    rc = self.raw(*args)
                except C.ArgumentError as e:
                    raise TypeError(f"{self.name}: {e}") from None
                if self.result_handle is not None:
                    if not rc:
                        raise Error(slot_text())
                    return wrap(self.result_handle, rc)
                if self.restype is C.c_int32 and rc != 0:
                    raise Error(slot_text())
                if self.restype is not C.c_int32 and self.restype is not None:
                    return rc
        results = []
        for k in self.results:
            kind = kinds[k]
            o = outs[k]
            if kind == "hout":
                results.append(wrap(p[k][1][:-2], o, owner if self.alias else None) if o else None)
            elif kind in ("out", "vout"):
                results.append(o.value)
            else:
                results.append(o)
        if not results:
            return None
        return results[0] if len(results) == 1 else tuple(results)

    def _call_sized(self, args, outs):
        k = self.groups[0]
        kind = self.kinds[k]
        raw = self.raw
        if kind == "text":
            size = C.c_int64(256)
            buf = C.create_string_buffer(256)
            args[k], args[k + 1] = buf, C.byref(size)
            rc = raw(*args)
            if rc != 0 and size.value != 256:
                buf = C.create_string_buffer(size.value)
                args[k] = buf
                rc = raw(*args)
            if rc != 0:
                raise Error(slot_text())
            outs[k] = buf.value.decode("utf-8", "surrogateescape")
        elif kind == "bytes":
            # Null out first: the count comes back through the size, either
            # with status 0 (a read of the count) or -1 with the size changed.
            size = C.c_int64(0)
            args[k], args[k + 1] = None, C.byref(size)
            rc = raw(*args)
            if rc != 0 and size.value == 0:
                empty = C.create_string_buffer(1)
                args[k] = empty
                rc = raw(*args)
                if rc != 0:
                    raise Error(slot_text())
                outs[k] = b""
                return
            n = size.value
            if rc == 0 and n == 0:
                outs[k] = b""
                return
            buf = C.create_string_buffer(max(n, 1))
            args[k] = buf
            if raw(*args) != 0:
                raise Error(slot_text())
            outs[k] = buf.raw[:size.value]
        elif kind == "handles":
            # The count first (nothing is read), then one slot per handle; every
            # handle is the caller's and is released with its object.
            count = C.c_int64(0)
            args[k], args[k + 1], args[k + 2] = None, 0, C.byref(count)
            if raw(*args) != 0:
                raise Error(slot_text())
            slots = (self.params[k][2]._type_ * count.value)()
            args[k], args[k + 1] = slots, C.sizeof(slots)
            if raw(*args) != 0:
                raise Error(slot_text())
            name = self.params[k][1][:-2]
            outs[k] = [wrap(name, slots[j]) for j in range(count.value)]
        else:  # arrays: out..., outBytes, pvalueCount
            element = self.params[k][2]._type_
            last = k + 1
            while self.kinds[last] == "array+":
                last += 1
            count = C.c_int64(0)
            for j in range(k, last):
                args[j] = None
            args[last], args[last + 1] = 0, C.byref(count)
            if raw(*args) != 0:
                raise Error(slot_text())
            arrays = [(element * count.value)() for _ in range(k, last)]
            for j, arr in zip(range(k, last), arrays):
                args[j] = C.cast(arr, self.params[k][2])
            args[last] = C.sizeof(arrays[0])
            if raw(*args) != 0:
                raise Error(slot_text())
            outs[k] = list(arrays[0]) if len(arrays) == 1 else tuple(list(a) for a in arrays)


def _bad_handle(fname, value, expected):
    raise TypeError(f"{fname}: expected a {expected} handle, got {getattr(value, '_c_name', type(value).__name__)}")


def _buffer(v):
    """(pointer argument, byte size) of a bytes-like object."""
    if v is None:
        return None, 0
    if isinstance(v, bytes):
        return v, len(v)
    mv = memoryview(v)
    if not mv.c_contiguous:
        data = mv.tobytes()
        return data, len(data)
    n = mv.nbytes
    if mv.readonly or n == 0:
        data = mv.tobytes()
        return data, n
    return (C.c_char * n).from_buffer(mv.cast("B")), n


def _array(v, element):
    if v is None:
        return None, 0
    try:
        mv = memoryview(v)
        if mv.c_contiguous and mv.itemsize == C.sizeof(element) and not mv.readonly and mv.ndim <= 1:
            return (element * len(mv)).from_buffer(mv), len(mv)
    except TypeError:
        pass
    values = list(v)
    return (element * len(values))(*values), len(values)


FUNCTIONS = {}


def function(name):
    return FUNCTIONS.get(name)


# ----- handles -----

_live = [0]
CLASSES = {}


def live_handles():
    """How many owning handles are alive in this process (a debug count)."""
    return _live[0]


def handle_class(c_name):
    cls = CLASSES.get(c_name)
    if cls is None:
        cls = type(_python_name(c_name), (Object,), {"_c_name": c_name})
        CLASSES[c_name] = cls
    return cls


def register(c_name):
    """Class decorator: the Python class for a C handle type."""
    def deco(cls):
        cls._c_name = c_name
        CLASSES[c_name] = cls
        return cls
    return deco


def _python_name(c_name):
    parts = c_name.split("_")
    return parts[-1] if len(parts) > 1 else c_name


def wrap(c_name, ptr, owner=None):
    """A Python object over a new handle; with `owner` the handle is an alias
    of `owner`'s object and is neither counted nor released."""
    cls = handle_class(c_name)
    if cls._list_like is None:
        cls._classify()
    obj = object.__new__(cls)
    d = obj.__dict__
    d["_ptr"] = ptr
    d["_owner"] = owner
    if owner is None:
        _live[0] += 1
    return obj


def snake_to_cap(name):
    parts = name.split("_")
    return "".join(p[:1].upper() + p[1:] for p in parts)


class Object:
    """A handle of the library with its functions as attributes.

    For a handle of C type `sorvane_arf_Mesh`, `mesh.name` calls
    `sorvane_arf_Mesh_getName`, `mesh.name = x` calls `..._setName`, a
    single reference `mesh.base_mesh` gives the object and
    `mesh.base_mesh_index` the stored id, a list of values or references
    comes as a sequence, and any other function is a method:
    `mesh.to_string()`, `meshes.add("body", True, 0)`. The handle is released
    with its `_delete` when the object is collected, or by `delete()`."""

    _c_name = None
    _list_like = None
    _attrs = None

    @classmethod
    def _classify(cls):
        cls._prefix = _function_prefix(cls._c_name)
        cls._list_like = bool(function(cls._prefix + "getSize") and function(cls._prefix + "getByIndex"))
        cls._attrs = {}

    # ----- lifetime -----

    def delete(self):
        """Releases the handle now; later calls on it fail with the library's text."""
        d = self.__dict__
        ptr = d.get("_ptr")
        if ptr is None or d.get("_owner") is not None:
            d["_ptr"] = None
            return
        d["_ptr"] = None
        _live[0] -= 1
        name = DELETE_NAMES.get(self._c_name)
        if name:
            FUNCTIONS[name](_Detached(ptr, self._c_name))

    def __del__(self):
        try:
            self.delete()
        except Exception:  # noqa: BLE001 - at interpreter exit the module may be gone
            pass

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        self.delete()

    @property
    def alive(self):
        return self.__dict__.get("_ptr") is not None

    # ----- attributes -----

    def _call(self, op, *args):
        f = function(self._prefix + op)
        if f is None:
            raise AttributeError(f"{type(self).__name__} has no {op}")
        return f.on(self, *args)

    def _resolve(self, name):
        attrs = self._attrs
        r = attrs.get(name)
        if r is not None:
            return r
        prefix = self._prefix
        cap = snake_to_cap(name)
        camel = cap[:1].lower() + cap[1:]
        fn = function
        if fn(prefix + camel) and not fn(prefix + "get" + cap):
            r = ("method", fn(prefix + camel))
        elif name.endswith("_index") and fn(prefix + "get" + cap):
            r = ("get", fn(prefix + "get" + cap), None)
        elif fn(prefix + f"get{cap}Size") and (fn(prefix + f"get{cap}Value") or fn(prefix + f"get{cap}ItemValue")):
            r = ("values", cap)
        elif name.endswith("_index") and fn(prefix + f"get{cap[:-5]}ItemValues"):
            r = ("ids", fn(prefix + f"get{cap[:-5]}ItemValues"))
        elif fn(prefix + "get" + cap):
            getter = fn(prefix + "get" + cap)
            # An absent optional value reads as None; an absent child object or
            # list is still handed out, so that it can be filled.
            gives_object = any(getter.kinds[k] == "hout" for k in getter.results)
            has = None if gives_object else fn(prefix + "has" + cap)
            if has is None and getter.fast is not None and len(getter.inputs) == 1:
                r = ("get0", getter.fast)  # the common getter: one straight call
            else:
                r = ("get", getter, has)
        else:
            r = ("none",)
        attrs[name] = r
        return r

    def __getattr__(self, name):
        if name.startswith("_"):
            raise AttributeError(name)
        r = self._resolve(name)
        _install(type(self), name, r)
        kind = r[0]
        if kind == "get":
            if r[2] is not None and not r[2].on(self):
                return None
            return r[1].on(self)
        if kind == "get0":
            return r[1](self)
        if kind == "method":
            f = r[1]
            return lambda *args: f.on(self, *args)
        if kind == "values":
            return ValueList(self, r[1])
        if kind == "ids":
            return r[1].on(self)
        raise AttributeError(f"{type(self).__name__} has no attribute {name!r}")

    def __setattr__(self, name, value):
        if name.startswith("_"):
            object.__setattr__(self, name, value)
            return
        prefix = self._prefix
        cap = snake_to_cap(name)
        if value is None and function(prefix + "remove" + cap):
            return function(prefix + "remove" + cap).on(self)
        if isinstance(value, (list, tuple)) and any(isinstance(v, Object) for v in value):
            value = [v.id if isinstance(v, Object) else v for v in value]  # references by their ids
        if isinstance(value, Object) or not function(prefix + f"set{cap}Index"):
            f = function(prefix + "set" + cap)
            if f is None and function(prefix + f"set{cap}ItemValues"):
                f = function(prefix + f"set{cap}ItemValues")
            elif f is None and function(prefix + f"set{cap}Values"):
                f = function(prefix + f"set{cap}Values")
            if f is None:
                raise AttributeError(f"{type(self).__name__} cannot set {name!r}")
            return f.on(self, value)
        return function(prefix + f"set{cap}Index").on(self, value)

    def __dir__(self):
        names = set(super().__dir__())
        n = len(self._prefix)
        ops = {f[n:] for f in FUNCTIONS if f.startswith(self._prefix)}
        for op in ops:
            m = re.match(r"(get|set|has|remove|add)([A-Z]\w*)$", op)
            if not m:
                names.add(_snake(op))
                continue
            verb, cap = m.groups()
            lists = re.match(r"(\w+?)(Size|ItemValues|ItemValue|Item|Values|Value)$", cap)
            if lists and f"get{lists.group(1)}Size" in ops:
                base = _snake(lists.group(1))
                names.add(base + "_index" if lists.group(2) == "ItemValues" else base)
            elif verb in ("get", "set"):
                names.add(_snake(cap))
            elif f"get{cap}" not in ops:
                names.add(_snake(op))
        return sorted(names)

    def __repr__(self):
        state = "" if self.alive else " deleted"
        return f"<talvex.{type(self).__name__}{state}>"

    # ----- lists -----

    def __len__(self):
        if not self._list_like:
            raise TypeError(f"{type(self).__name__} is no list")
        return self._call("getSize")

    def __getitem__(self, key):
        if not self._list_like:
            raise TypeError(f"{type(self).__name__} is no list")
        if isinstance(key, str):
            return self._call("getByName", key)
        if isinstance(key, slice):
            return [self[i] for i in range(*key.indices(len(self)))]
        n = len(self)
        if key < 0:
            key += n
        if not 0 <= key < n:
            raise IndexError(key)
        return self._call("getByIndex", key)

    def __iter__(self):
        if not self._list_like:
            raise TypeError(f"{type(self).__name__} is no list")
        for i in range(len(self)):
            yield self._call("getByIndex", i)

    def __contains__(self, key):
        if isinstance(key, str):
            return self._call("hasByName", key)
        return self._call("has", key)

    def by_id(self, id):
        """The item with this id (by index on lists without ids)."""
        return self._call("get", id)

    def by_name(self, name):
        return self._call("getByName", name)


def _install(cls, name, r):
    """Puts a resolved attribute on the class itself, so that later reads are
    a plain property or method lookup and not a miss through __getattr__."""
    kind = r[0]
    if kind == "get0":
        fast = r[1]
        setattr(cls, name, property(fast))
    elif kind == "get":
        getter, has = r[1], r[2]
        if has is None:
            setattr(cls, name, property(lambda self: getter.on(self)))
        else:
            setattr(cls, name, property(lambda self: getter.on(self) if has.on(self) else None))
    elif kind == "method":
        f = r[1]
        setattr(cls, name, lambda self, *args: f.on(self, *args))
    elif kind == "values":
        cap = r[1]
        setattr(cls, name, property(lambda self: ValueList(self, cap)))
    elif kind == "ids":
        f = r[1]
        setattr(cls, name, property(lambda self: f.on(self)))


def _function_prefix(c_name):
    # Handle types are named like the functions' class part, except the
    # provider reference, whose functions drop the "Ref".
    delete = DELETE_NAMES.get(c_name)
    if delete:
        return delete[: -len("delete")]
    return c_name + "_"


def _snake(cap):
    return re.sub(r"(?<!^)([A-Z])", r"_\1", cap).lower()


class _Detached:
    """A bare pointer passed where a handle object is expected."""

    def __init__(self, ptr, c_name):
        self._ptr = ptr
        self._c_name = c_name


class ValueList:
    """A list of values or references of an object, read and written in place."""

    def __init__(self, obj, cap):
        self._obj = obj
        p = obj._prefix
        self._size = function(p + f"get{cap}Size")
        self._item = function(p + f"get{cap}Item")  # referenced objects
        self._get = function(p + f"get{cap}Value") or function(p + f"get{cap}ItemValue")
        self._set = function(p + f"set{cap}Value") or function(p + f"set{cap}ItemValue")
        self._add = function(p + f"add{cap}Value")

    def __len__(self):
        return self._size.on(self._obj)

    def _index(self, i):
        n = len(self)
        if i < 0:
            i += n
        if not 0 <= i < n:
            raise IndexError(i)
        return i

    def __getitem__(self, i):
        if isinstance(i, slice):
            return [self[k] for k in range(*i.indices(len(self)))]
        i = self._index(i)
        return (self._item or self._get).on(self._obj, i)

    def __setitem__(self, i, value):
        self._set.on(self._obj, self._index(i), value)

    def __iter__(self):
        for i in range(len(self)):
            yield self[i]

    def append(self, value):
        if self._add is None:
            raise TypeError("references are added by setting the whole list")
        self._add.on(self._obj, value)

    add = append

    def values(self):
        """The stored values (ids for references)."""
        return [self._get.on(self._obj, i) for i in range(len(self))]

    def __eq__(self, other):
        return list(self) == list(other)

    def __repr__(self):
        return repr(self.values())


for _name, _header, _result, _params in _flat.FUNCTIONS:
    FUNCTIONS[_name] = Function(_name, _header, _result, _params, _raw(_name, _result[1], _params))
