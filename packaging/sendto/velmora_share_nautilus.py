# SPDX-FileCopyrightText: 2026 The velmora-share developers
#
# SPDX-License-Identifier: MIT

"""Nautilus (through nautilus-python): "Send with Velmora" in the context menu of files and
folders, which starts velmora-share with the selected local paths."""

import subprocess

import gi

try:
    gi.require_version("Nautilus", "4.0")
except ValueError:
    gi.require_version("Nautilus", "3.0")
from gi.repository import GObject, Nautilus  # noqa: E402


def _local_paths(files):
    paths = []
    for item in files:
        location = item.get_location()
        path = location.get_path() if location is not None else None
        if path is None:
            return []  # a remote or virtual item: velmora-share can only attach local files
        paths.append(path)
    return paths


class VelmoraShareMenu(GObject.GObject, Nautilus.MenuProvider):
    def _send(self, _menu, paths):
        # Started on its own; Nautilus does not wait for the composer.
        subprocess.Popen(["velmora-share", "--", *paths], start_new_session=True)

    def get_file_items(self, *args):
        # Nautilus 43 and later pass (files); earlier ones (window, files).
        paths = _local_paths(args[-1])
        if not paths:
            return []
        item = Nautilus.MenuItem(name="VelmoraShare::send", label="Send with Velmora",
                                 icon="it.zemlo.velmora.share")
        item.connect("activate", self._send, paths)
        return [item]
