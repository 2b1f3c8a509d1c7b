"""Packages: from a bottle to a .deb, and from an installed package to a user's bottle.

Packing (bottles_packager.py): request reads what the user has chosen, contents lists what goes along by the rules of
private, registry, links and winefiles, menu and debian add what Debian needs, archive writes the .deb into a savefile.

Starting (packaged_program.py): userbottle makes the user's bottle from the package, upgrade brings it to the version
of an upgraded package, origin tells which package a bottle is of, progress shows how far it is, start hands it to the
application. layout has the places that both sides know.
"""
