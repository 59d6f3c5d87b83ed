#!/usr/bin/env bash
# qmllint (unqualified-access check) over the settings application's QML files that import
# App 1.0, with and without the module's App.qmltypes: the description must resolve the uses of
# the module's types (FolderAlias, Folder, Directories) that qmllint cannot resolve without it.
# Qt 5.15's qmllint reads one import directory only and loses imports in some nested scopes,
# so the description is passed as a file (-i) and the figures are reported; a crash of qmllint
# on a file leaves that file out of both counts. Every file must pass the plain syntax check.
# Usage: qmllint_app.sh QMLLINT QMLTYPES QML_FILE...
set -uo pipefail
qmllint=$1 qmltypes=$2; shift 2
qt=$(qmake -query QT_INSTALL_QML 2>/dev/null)
[ -d "$qt/QtQml" ] || { echo "SKIP: Qt's QtQml module description is missing (qml-module-qtqml)"; exit 77; }
[ -f "$qmltypes" ] || { echo "missing $qmltypes"; exit 1; }
work=$(mktemp -d); trap 'rm -rf "$work"' EXIT
status=0
for f in "$@"; do "$qmllint" "$f" || { echo "syntax: $f"; status=1; }; done
# Connections lives in QtQml, which this qmllint does not follow from QtQuick's qmldir.
for f in "$@"; do sed '1i import QtQml 2.15' "$f" > "$work/$(basename "$f")"; done
unresolved() { # extra qmllint arguments -> number of unresolved uses of App's types
    local f n rc total=0
    for f in "$work"/*.qml; do
        grep -q "^import App 1.0" "$f" || continue
        "$qmllint" -U "$@" -I "$qt" "$f" > "$work/out" 2>&1
        rc=$?
        [ $rc -ge 128 ] && [ $rc -ne 255 ] && continue # killed by a signal; 255: it warned
        n=$(grep -A1 "unqualified access at" "$work/out" | grep -cE "\b(FolderAlias|Folder|Directories)\.")
        total=$((total + n))
    done
    echo $total
}
printf 'import QtQuick.tooling 1.2\nModule {}\n' > "$work/none.qmltypes"
without=$(unresolved -i "$work/none.qmltypes")
with=$(unresolved -i "$qmltypes")
echo "uses of App's types qmllint cannot resolve: $without without the description, $with with it"
[ "$without" -gt 0 ] && [ "$with" -lt "$without" ] || status=1
exit $status
