// Objects and records as JSON, without loss: an object that this form can't give back bit for bit is told as its bytes.
//
//   record   {"id": 4, "object": {...}}  or  {"id": 4, "hex": "..."}
//   object   {"class": "GPf", "data_id": 10, "value": 18.01528}, null for a null pointer
//   area     {"class": "GPv", "data_id": 97, "area": "...", "decoded": {...}}; the hex counts, decoded is for the reader
//   list     {"class": "GPDataArray", "items": [...]}
//   numbers  {"class": "GPVector", "values": [...]}
//
// Numbers have as many digits as they need; those that aren't finite are the texts "inf", "-inf" and "nan:" with the bits in hex.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include <zpbase/platform/runtime.h>
#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

class JsonText;

// The object in the shortest JSON; of a class that has no form the class alone. Notes are what only people read.
std::string ObjectToJson(CObject const * object, bool withNotes = true);

// The object told, null for null. Raises Failure with the place of what is wrong, such as items[2].value.
std::unique_ptr<CObject> ObjectFromJson(Json const & json);

// The record; without an id only what it holds.
void WriteRecord(JsonText & json, std::span<BYTE const> bytes, int id = -1);

// The bytes of a record told by "object" or "hex".
std::vector<BYTE> RecordFromJson(Json const & json);
