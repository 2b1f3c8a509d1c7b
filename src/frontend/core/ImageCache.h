#pragma once

/// Removes every file of the image cache that was last modified more than `days` days ago.
void purgeImageCache(int days);
