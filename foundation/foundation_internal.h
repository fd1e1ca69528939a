// What the containers share.

#pragma once

#include <vector>

#include <zpbase/foundation.h>

namespace zp {

// Sorts pointers ascending by Compare; safe for a Compare that is no order.
void SortObjects(std::vector<CObject *> & objects);

// Compare of two elements; by address where one is null or no GPObject.
int CompareElements(CObject const * first, CObject const * second);

// A clone of an element: what GPObject::Clone gives, null for null or for an object that is no GPObject.
CObject * CloneElement(CObject const * element);

// Deletes each of the objects once, wherever it stands among them and how often.
void DeleteOnce(std::vector<CObject *> objects);

// The element as a GPObject, or null.
GPObject const * AsGPObject(CObject const * element);

}  // namespace zp
