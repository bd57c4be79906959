#!/usr/bin/env bash
# Checks that no source file of the host uses the classes that plug-ins implement, except for those
# that wrap them in PluginNode, PluginBinding and Plugin, and one that defines a node.
# Usage: door_test.sh SOURCE_TREE
set -euo pipefail
cd "$1"

classes='authoring/GuiNode(Factory)?|bindings/(Material|[A-Za-z]*Binding)|nodekit/[A-Za-z]*'
allowed='mox/host/Plugin.cpp mox/host/PluginBinding.cpp mox/host/PluginNode.cpp mox/preview/NodeProbe.cpp'
seen=$(grep -rlE "include .mox/($classes)\.h" tools mox |
    grep -vE '^mox/(authoring|bindings|nodekit|shader)/' | sort)
diff <(tr ' ' '\n' <<<"$allowed") <(echo "$seen")
