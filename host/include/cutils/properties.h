/*
 * Android 13's <cutils/properties.h>, for the host. The property store behind it is an
 * in-process table (see hostctl/Properties.h) with the platform's limits and parsing rules.
 */
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <sys/cdefs.h>

__BEGIN_DECLS

#define PROPERTY_KEY_MAX 32
#define PROPERTY_VALUE_MAX 92

/* Copies the value of `key` into `value` (at most PROPERTY_VALUE_MAX bytes with the NUL) and
 * returns its length. A missing or empty property yields `default_value` (cut to fit) when it is
 * not NULL, else an empty string. */
int property_get(const char* key, char* value, const char* default_value);

/* "1", "y", "yes", "true", "on" are true; "0", "n", "no", "false", "off" are false; anything
 * else yields `default_value`. */
int8_t property_get_bool(const char* key, int8_t default_value);

/* The value as an integer in base 0 (decimal, 0x hexadecimal or 0 octal); `default_value` when
 * the property is missing or empty, or its text is not wholly a number in range. */
int64_t property_get_int64(const char* key, int64_t default_value);
int32_t property_get_int32(const char* key, int32_t default_value);

/* Sets `key` to `value`. Returns 0, or a negative value when the value is PROPERTY_VALUE_MAX
 * bytes or longer, the key is missing, or a read-only ("ro.") property is already set. */
int property_set(const char* key, const char* value);

int property_list(void (*propfn)(const char* key, const char* value, void* cookie), void* cookie);

__END_DECLS
