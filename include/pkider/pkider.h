// The whole interface of the library.
#pragma once

#include <pkider/alg.h>
#include <pkider/der.h>
#include <pkider/dn.h>
#include <pkider/oid.h>
#include <pkider/pkcs12.h>
#include <pkider/pkcs8.h>
#include <pkider/version.h>
