// A server-side program outside the project: working days and the cipher
// from the installed core library, without Qt.
#include <KZCrypt.h>
#include <KZWorkdays.h>

#include <cstdio>

int main()
{
    WorkdayCalendar bavaria;
    bavaria.land = KZBasicServices::BY;
    long workdays = 0;
    if (KZWorkdays::count(KZDate(1, 1, 2026), KZDate(31, 12, 2026), bavaria, workdays) != KZWorkdays::Ok)
        return 1;
    std::printf("workdays BY 2026: %ld\n", workdays);

    // FIPS-197, appendix C.1.
    keyInstance key;
    cipherInstance cipher;
    const unsigned char plain[16] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77,
                                     0x88, 0x99, 0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff};
    unsigned char sealed[16];
    if (makeKey(&key, DIR_ENCRYPT, 128, "000102030405060708090a0b0c0d0e0f") != CIPHER_SUCCESS
        || cipherInit(&cipher, MODE_ECB, nullptr) != CIPHER_SUCCESS
        || blockEncrypt(&cipher, &key, plain, 128, sealed) != 128)
        return 1;
    std::printf("AES-128:");
    for (unsigned char byte : sealed)
        std::printf(" %02x", byte);
    std::printf("\n");
    return 0;
}
