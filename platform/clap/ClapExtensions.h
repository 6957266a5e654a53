#pragma once

// The CLAP extensions an instance offers, by id; null for any other.
namespace ClapExtensions
{
    const void* find (const char* id);
}
