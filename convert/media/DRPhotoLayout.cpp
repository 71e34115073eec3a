#include "convert/media/DRPhotoLayout.h"

using namespace Qt::StringLiterals;

QString DRPhotoLayout::database() const
{
    return domain + u'-' + kRoot + u"/PhotoData/Photos.sqlite"_s;
}

const std::array<DRPhotoLayout, 2>& DRPhotoLayout::all()
{
    static const std::array<DRPhotoLayout, 2> kLayouts{{
        {.domain = u"CameraRollDomain"_s,
         .assetTable = u"ZGENERICASSET"_s,
         .assetKey = "Z_PK",
         .directory = "ZDIRECTORY",
         .filename = "ZFILENAME",
         .assetTitle = "ZTITLE",
         .uti = "ZUNIFORMTYPEIDENTIFIER",
         .defaultUti = {},
         .albumTable = u"ZGENERICALBUM"_s,
         .albumKey = "Z_PK",
         .kind = "ZKIND",
         .keyAsset = "ZKEYASSET",
         .albumTitle = "ZTITLE",
         .join = &DRAlbumJoin::ofNewerLayout},
        {.domain = u"MediaDomain"_s,
         .assetTable = u"Photo"_s,
         .assetKey = "primaryKey",
         .directory = "directory",
         .filename = "filename",
         .assetTitle = "title",
         .uti = nullptr,
         .defaultUti = u"public.jpeg"_s,
         .albumTable = u"PhotoAlbum"_s,
         .albumKey = "primaryKey",
         .kind = "kind",
         .keyAsset = "keyPhotoKey",
         .albumTitle = "title",
         .join = &DRAlbumJoin::ofOlderLayout},
    }};
    return kLayouts;
}
