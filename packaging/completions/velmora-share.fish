# SPDX-FileCopyrightText: 2026 The velmora-share developers
#
# SPDX-License-Identifier: MIT

# fish completion for velmora-share

complete -c velmora-share -l title -x -d "The share's title"
complete -c velmora-share -l text -x -d 'Rich text shared with the items'
complete -c velmora-share -l image -r -F -d "Share a file's bytes as image data"
complete -c velmora-share -l container -x -a '(__fish_complete_directories)' -d 'The shared container'
complete -c velmora-share -l bundle-id -x -d "This program's bundle identifier"
complete -c velmora-share -l headless -d 'No window: fill the composer from the options and send'
complete -c velmora-share -l from -x -d 'The From item to choose'
complete -c velmora-share -l to -x -d 'Add a recipient'
complete -c velmora-share -l cc -x -d 'Add a Cc recipient'
complete -c velmora-share -l bcc -x -d 'Add a Bcc recipient'
complete -c velmora-share -l subject -x -d 'The subject'
complete -c velmora-share -l body -x -d "The body's text"
complete -c velmora-share -l cancel -d 'Cancel instead of sending'
complete -c velmora-share -l print-url -d 'Print the command URLs instead of opening them'
complete -c velmora-share -l screenshot -r -F -d 'Write a PNG of the composer'
complete -c velmora-share -s h -l help -d 'Show the options'
complete -c velmora-share -l version -d 'Show the version'
