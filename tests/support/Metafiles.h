// Metafiles put together from their words.

#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include <zpbase/platform/types.h>

// A record of a function and its parameter words, then bytes, filled up to a whole word; the size in front tells them all.
std::string MetaRecord(WORD function, std::initializer_list<int> words, std::string_view bytes = {});

// A header and the record that ends a metafile.
std::string MetaHeader();
std::string MetaEnd();

// A placeable header with bounds 0, 0, 400, 300.
std::string PlaceableHeader();
