#!/usr/bin/env bash
# Checks the binary interface of the built library:
#   - its SONAME is libdmcommon.so.<major>;
#   - its dynamic symbol table holds the library's own API only: names in the
#     namespaces DmExtension and DmCppHelperV1, global names starting with DM,
#     and their typeinfo, vtables, VTTs and thunks. Nothing from Xerces, ICU or
#     std instantiations over the library's types.
#
#   check_symbols.sh path/to/libdmcommon.so.X.Y.Z MAJOR
set -euo pipefail

library=${1:?usage: check_symbols.sh LIBRARY MAJOR}
major=${2:?usage: check_symbols.sh LIBRARY MAJOR}

failed=0

soname=$(readelf -d "$library" | sed -n 's/.*Library soname: \[\(.*\)\].*/\1/p')
if [ "$soname" != "libdmcommon.so.$major" ]; then
  echo "FAILED: SONAME is '$soname', expected libdmcommon.so.$major" >&2
  failed=1
else
  echo "SONAME $soname"
fi

symbols=$(nm -D --defined-only -C "$library" | cut -d' ' -f3-)
if [ -z "$symbols" ]; then
  echo "FAILED: nm found no exported symbols in $library" >&2
  exit 1
fi

owner='^(DmExtension::|DmCppHelperV1::|DM)'
special='^(typeinfo for |typeinfo name for |vtable for |VTT for |non-virtual thunk to |virtual thunk to )'

# Whether one demangled symbol belongs to the library's API.
allowed() {
  local name=$1
  if [[ $name =~ $special ]]; then
    name=${name#"${BASH_REMATCH[0]}"}
  fi
  [[ $name =~ $owner ]] || return 1

  # Look at the qualified name only: drop the parameter list, any operator
  # name, and template arguments, innermost first.
  local head=${name%%(*}
  head=${head%%::operator*}
  while [[ $head =~ \<[^\<\>]*\> ]]; do
    head=${head/"${BASH_REMATCH[0]}"/}
  done
  # A function template's demangled name starts with its return type, so
  # "DMField*& std::vector<DMField*>::emplace_back<...>(...)" starts with DM
  # too; a space left in the qualified name gives it away.
  [[ $head != *" "* ]] || return 1
  [[ $head != *std::* && $head != *xercesc* && $head != *icu_* && $head != *__gnu_cxx* ]]
}

count=0
while IFS= read -r symbol; do
  count=$((count + 1))
  if ! allowed "$symbol"; then
    echo "FAILED: exported symbol outside the library's API: $symbol" >&2
    failed=1
  fi
done <<<"$symbols"

# A sanity check that the table is not empty for a wrong reason.
for expected in 'DmExtension::DMXMLWrapper::startup(bool)' \
                'DmExtension::DMXMLWrapper::shutdown(bool)'; do
  if ! grep -qxF "$expected" <<<"$symbols"; then
    echo "FAILED: $expected is not exported" >&2
    failed=1
  fi
done

if [ "$failed" -ne 0 ]; then
  exit 1
fi
echo "$count exported symbols, all in the library's API"
