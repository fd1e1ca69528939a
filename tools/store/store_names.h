// The two files of a record store, found from the name that a user gives: either file, their stem, or an index file with its
// record file beside it.
#pragma once

#include <string>

struct StoreNames {
  std::string index;  // host names
  std::string record;
};

// The other file's name follows from the pairs of extensions in the table of names, in either case of letters. Of a stem that
// leads to no file the pair is ".SI" and ".SR". With a record name the first name is the index file as it stands. Raises a
// usage failure for a stem that fits several stores, and for a file whose extension belongs to none.
StoreNames ResolveStore(std::string const & name, std::string const & recordName);

// Raises Failure for an output that leads to one of the store's files, by whatever name.
void RequireOtherFile(StoreNames const & names, std::string const & output);
